// SPDX-License-Identifier: MIT

#include "wireless/NMConfFile.h"

#include "common/Files.h"
#include "common/Text.h"

#include <QByteArray>
#include <QFile>
#include <QLatin1String>
#include <QStringList>
#include <QtDebug>

namespace {

QChar const kEquals = QLatin1Char('=');

QLatin1String const kAutoconnect("autoconnect");
QLatin1String const kType("type");
QLatin1String const kWirelessType("802-11-wireless");

QLatin1String const kSsid("ssid");
QLatin1String const kSecurity("security");
QLatin1String const kSecurityGroupName("802-11-wireless-security");

QLatin1String const kKeyManagement("key-mgmt");
QLatin1String const kWpaKeyManagement("wpa-psk");
QLatin1String const kWepKeyManagement("none");
QLatin1String const kPsk("psk");
QLatin1String const kWepKey("wep-key0");
QLatin1String const kWepKeyType("wep-key-type");
QLatin1String const kWepKeyIndex("wep-tx-keyidx");
QLatin1String const kAuthentication("auth-alg");

// The names that the view gives to the security types.
QLatin1String const kNone("none");
QLatin1String const kWep("WEP");
QLatin1String const kWpa("WPA Personal");
QLatin1String const kWpa2("WPA2 Personal");

// The longest WEP key there is: 104 bits in hexadecimal digits. Anything longer is a passphrase.
int const kLongestWepKey = 26;

// In the order of NMConfFile::Group.
char const* const kHeaders[] = {
    "[802-11-wireless-security]",
    "[connection]",
    "[802-11-wireless]",
    "[ipv4]",
};

int latin1Code(QChar character)
{
    return character.unicode() > 0xff ? 0 : character.unicode();
}

} // namespace

struct NMConfFile::DefaultValue
{
    Group group;
    char const* key;
    char const* value;
};

// clang-format off
NMConfFile::DefaultValue const NMConfFile::smDefaultValues[] = {
    { ConnectionGroup, "id",                 "Zelvo" },
    // One fixed UUID: there is at most one file of this content on a system.
    { ConnectionGroup, "uuid",               "a3021b5f-f1b6-4398-a548-b967630b62be" },
    { ConnectionGroup, "type",               "802-11-wireless" },
    { ConnectionGroup, "autoconnect",        "true" },
    { ConnectionGroup, "timestamp",          "0" },
    { WirelessGroup,   "ssid",               "" },
    { WirelessGroup,   "mode",               "infrastructure" },
    { WirelessGroup,   "channel",            "0" },
    { WirelessGroup,   "rate",               "0" },
    { WirelessGroup,   "tx-power",           "0" },
    { WirelessGroup,   "mtu",                "0" },
    { WirelessGroup,   "seen-bssids",        "00:1e:2a:03:c7:de;" },
    { Ipv4Group,       "method",             "auto" },
    { Ipv4Group,       "ignore-auto-routes", "false" },
    { Ipv4Group,       "ignore-auto-dns",    "false" },
    { Ipv4Group,       "never-default",      "false" },
};
// clang-format on

NMConfFile::NMConfFile(QString const& path)
    : mFile(new QFile(path))
{
    if (isMissing(path))
        loadDefaultConfig();
    else
        loadConfig();
}

NMConfFile::~NMConfFile()
{
}

QString NMConfFile::fileName() const
{
    return mFile->fileName();
}

bool NMConfFile::autoconnect() const
{
    return mGroups[ConnectionGroup].value(kAutoconnect).toBool();
}

void NMConfFile::setAutoconnect(bool on)
{
    mGroups[ConnectionGroup].insert(kAutoconnect, on);
}

QString NMConfFile::ssid() const
{
    QString result = emptyText();
    QStringList const codes = text(WirelessGroup, kSsid).split(QLatin1Char(';'));
    for (QString const& code : codes) {
        if (!code.isEmpty())
            result.append(QChar(code.toInt() & 0xff));
    }
    return result;
}

void NMConfFile::setSsid(QString const& ssid)
{
    QString codes = emptyText();
    for (QChar const character : ssid) {
        codes.append(QString::number(latin1Code(character)));
        codes.append(QLatin1Char(';'));
    }
    mGroups[WirelessGroup].insert(kSsid, codes);
}

QString NMConfFile::security() const
{
    if (text(SecurityGroup, kKeyManagement) == kWpaKeyManagement)
        return kWpa;
    return mGroups[SecurityGroup].contains(kWepKeyType) ? kWep : kNone;
}

// By value, as the platform has it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void NMConfFile::setSecurity(QString name)
{
    if (name == security())
        return;
    // To be read before the group is emptied: where it stands depends on the old type.
    QString const oldPassphrase = passphrase();
    mGroups[SecurityGroup].clear();

    if (name == kWep) {
        startSecurity(kWepKeyManagement);
        mGroups[SecurityGroup].insert(kAuthentication, QLatin1String("shared"));
        setWepKey(oldPassphrase);
    } else if (name == kWpa || name == kWpa2) {
        startSecurity(kWpaKeyManagement);
        mGroups[SecurityGroup].insert(kPsk, oldPassphrase);
        // A WEP key of no type, which goes into a WPA connection too.
        mGroups[SecurityGroup].insert(kWepKeyType, QLatin1String("0"));
    } else {
        mGroups[WirelessGroup].remove(kSecurity);
    }
}

QString NMConfFile::passphrase() const
{
    QString const type = security();
    if (type == kWep)
        return text(SecurityGroup, kWepKey);
    return type == kWpa ? text(SecurityGroup, kPsk) : emptyText();
}

void NMConfFile::setPassphrase(QString const& passphrase)
{
    QString const type = security();
    if (type == kWep)
        setWepKey(passphrase);
    else if (type == kWpa)
        mGroups[SecurityGroup].insert(kPsk, passphrase);
}

bool NMConfFile::sReadsBack(QString const& value)
{
    // A carriage return would end the line for others.
    return !value.contains(kEquals) && !value.contains(QLatin1Char('\n'))
        && !value.contains(QLatin1Char('\r')) && latin1UpToNul(value.toLatin1().trimmed()) == value;
}

bool NMConfFile::isWirelessConfig() const
{
    return text(ConnectionGroup, kType) == kWirelessType;
}

QString NMConfFile::toString() const
{
    QString result;
    for (int group = 0; group < GroupCount; ++group) {
        result.append(QLatin1Char('\n'));
        QMap<QString, QVariant> const& values = mGroups[group];
        if (values.isEmpty())
            continue;
        result.append(QLatin1String(kHeaders[group]) + QLatin1Char('\n'));
        for (auto it = values.constBegin(); it != values.constEnd(); ++it)
            result.append(it.key() + QLatin1Char('=') + it.value().toString() + QLatin1Char('\n'));
    }
    return result;
}

void NMConfFile::sync()
{
    mFile->close();
    // What could not be read must not be lost by writing the rest.
    if (mIsRead)
        static_cast<void>(replaceFile(mFile->fileName(), toString().toLatin1()));
}

void NMConfFile::loadConfig()
{
    mIsRead = mFile->isOpen() ? mFile->seek(0) : openRegularFile(*mFile, QIODevice::ReadOnly);
    if (!mIsRead)
        return;

    Group current = NoGroup;
    QList<QByteArray> const lines = mFile->readAll().split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        QString const line = latin1UpToNul(lines.at(i).trimmed());
        if (!parseLine(line, current))
            warn(i + 1, line);
    }
    mIsRead = mFile->error() == QFile::NoError;
}

void NMConfFile::loadDefaultConfig()
{
    for (DefaultValue const& row : smDefaultValues)
        mGroups[row.group].insert(QLatin1String(row.key), QString::fromLatin1(row.value));
}

NMConfFile::Group NMConfFile::sGroupOfHeader(QString const& line)
{
    for (int group = 0; group < GroupCount; ++group) {
        if (line == QLatin1String(kHeaders[group]))
            return static_cast<Group>(group);
    }
    return NoGroup;
}

/// The value of a key as text: empty, but not null, when it is missing.
QString NMConfFile::text(Group group, QString const& key) const
{
    QString const value = mGroups[group].value(key).toString();
    return value.isNull() ? emptyText() : value;
}

/// @param current  the group that the line stands in; a header line changes it.
/// @return false: what the line says is in no group and will be lost.
bool NMConfFile::parseLine(QString const& line, Group& current)
{
    if (line.startsWith(QLatin1Char('['))) {
        current = sGroupOfHeader(line);
    } else if (current == NoGroup) {
        return line.isEmpty();
    } else if (line.contains(kEquals)) {
        // The text behind the last "=" is the value, and blanks beside a "=" belong to what they
        // stand in: both are how these files have always been read here.
        mGroups[current].insert(line.left(line.indexOf(kEquals)),
                                line.mid(line.lastIndexOf(kEquals) + 1));
    }
    return true;
}

/// Says which line was not parsed, but not what it sets: that may be a password.
void NMConfFile::warn(int number, QString const& line) const
{
    QString text = QString::fromLatin1("unparsed line %1 of %2").arg(number).arg(fileName());
    if (line.contains(kEquals))
        text += QLatin1String(": \"") + line.left(line.indexOf(kEquals)) + QLatin1Char('"');
    qWarning("%s", text.toUtf8().constData());
}

/// What the secured types have in common, WEP's key index included: WPA connections carry it too.
void NMConfFile::startSecurity(QString const& keyManagement)
{
    mGroups[SecurityGroup].insert(kKeyManagement, keyManagement);
    mGroups[SecurityGroup].insert(kWepKeyIndex, QLatin1String("0"));
    mGroups[WirelessGroup].insert(kSecurity, kSecurityGroupName);
}

void NMConfFile::setWepKey(QString const& key)
{
    // "1" is a key in hexadecimal digits or characters, "2" a passphrase to be hashed into one.
    QLatin1String const keyType(key.length() > kLongestWepKey ? "2" : "1");
    mGroups[SecurityGroup].insert(kWepKey, key);
    mGroups[SecurityGroup].insert(kWepKeyType, keyType);
}
