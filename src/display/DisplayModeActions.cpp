// SPDX-License-Identifier: MIT

#include "display/DisplayModeActions.h"

#include "common/Files.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QLatin1String>
#include <QRegExp>
#include <QStringList>
#include <QVariant>

#include <limits>

namespace {

BackEnd const kDisplaySettings = {"display", "display settings", "the display settings"};

QLatin1String const kConfiguration("root/Display/Configuration");

// Made by the platform for its graphics driver: a list of what the display can do, or a link to the
// driver's own.
QLatin1String const kPreferencesFile("/etc/wlox-display-prefs/prefs.conf");
QLatin1String const kXgiPreferences("prefs.xgi");
char const kRefreshLine[] = "Refresh=";

// Width, height and rate of a display that chooses them itself, in the registry and in the view.
QLatin1String const kAutomatic("0");
QLatin1String const kAuto("Auto");

// No profile, and so no picture, on the other monitors, in the registry and in the view.
QLatin1String const kNoProfile("<None>");
QLatin1String const kDisable("Disable");
QLatin1String const kFirstMode("0");

QLatin1String const kDefaultDepth("8");
QLatin1String const kDepthUnit(" Bpp");

/// What `pattern` captures in `text`; where it does not match, `otherwise` for each capture.
QStringList captures(char const* pattern, QString const& text, QString const& otherwise)
{
    QRegExp expression((QLatin1String(pattern)));
    bool const matches = expression.indexIn(text) != -1;
    QStringList found;
    for (int i = 1; i <= expression.captureCount(); ++i)
        found.append(matches ? expression.cap(i) : otherwise);
    return found;
}

/// The rate of a line that offers one: what stands before the first comma.
QString offeredRate(QByteArray const& line)
{
    int const start = static_cast<int>(qstrlen(kRefreshLine));
    QString const text = QString::fromLatin1(line.constData() + start, line.size() - start);
    return text.left(text.indexOf(QLatin1Char(','))).trimmed();
}

/// The rates of the preferences file; none when it cannot be read.
QStringList offeredRates()
{
    QStringList rates;
    QFile file(kPreferencesFile);
    if (!openRegularFile(file, QIODevice::ReadOnly | QIODevice::Text))
        return rates;
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        if (line.startsWith(kRefreshLine))
            rates.append(offeredRate(line));
    }
    return rates;
}

QStringList allowedRates()
{
    QStringList const rates = offeredRates();
    if (!rates.isEmpty())
        return rates;
    return QStringList() << kAutomatic << QLatin1String("75") << QLatin1String("72")
                         << QLatin1String("60");
}

/// Whether the display is driven by the XGI driver, whose other monitors take no profile.
bool usesXgiDriver()
{
    return QFileInfo(kPreferencesFile).symLinkTarget().endsWith(kXgiPreferences);
}

} // namespace

DisplayModeActions::DisplayModeActions(Vantora& backend, QString const& directoryTemplate)
    : ConfigActions(backend)
    , mDirectoryTemplate(directoryTemplate)
{
}

bool DisplayModeActions::execute(IConfigEntry const& entry, QVariant& value)
{
    switch (currentAction()) {
    case ISettingClass::ACTION_VALUE: {
        QString const path = directory();
        return !path.isNull() && readView(keysIn(path), value);
    }
    case ISettingClass::ACTION_SET_VALUE: {
        QString const path = directoryForSetting();
        return !path.isNull() && writeView(keysIn(path), value);
    }
    case ISettingClass::ACTION_COMMIT: {
        QStringList const keys = keysToCommit(entry);
        return !keys.isEmpty() && commit(keys);
    }
    default:
        return false;
    }
}

ActionDescription DisplayModeActions::describe(IConfigEntry const& entry) const
{
    ActionDescription description = DescribedAction::describe(entry);
    description.backEnd = &kDisplaySettings;
    description.registryKeys = keysIn(mDirectoryTemplate);
    description.runsScript = false;
    return description;
}

QStringList DisplayModeActions::keysToCommit(IConfigEntry const&)
{
    QString const path = directory();
    return path.isNull() ? QStringList() : keysIn(path);
}

QString DisplayModeActions::directory()
{
    return kConfiguration;
}

QString DisplayModeActions::directoryForSetting()
{
    return directory();
}

ProfileModeActions::ProfileModeActions(Vantora& backend)
    : DisplayModeActions(backend, sProfilePathTemplate())
{
}

bool ProfileModeActions::writeAndKeep(QStringList const& keys, QString const& text, QVariant& value)
{
    if (!write(keys, QStringList(text)))
        return false;
    value = text;
    return true;
}

QString ProfileModeActions::directory()
{
    return primaryProfilePath();
}

QString ProfileModeActions::directoryForSetting()
{
    return ensurePrimaryProfile();
}

ColorDepthActions::ColorDepthActions(Vantora& backend)
    : ProfileModeActions(backend)
{
    describeAs("ColorDepthActions");
}

QStringList ColorDepthActions::keysIn(QString const& directory) const
{
    return QStringList(directory + QLatin1String("/depth"));
}

bool ColorDepthActions::readView(QStringList const& keys, QVariant& value)
{
    QString depth;
    if (!read(keys.first(), depth))
        return false;
    value = QString(depth + kDepthUnit);
    return true;
}

bool ColorDepthActions::writeView(QStringList const& keys, QVariant& value)
{
    QStringList const depth = captures("^(\\d+) Bpp", value.toString(), kDefaultDepth);
    return writeAndKeep(keys, depth.first(), value);
}

MultiMonitorModeActions::MultiMonitorModeActions(Vantora& backend,
                                                 QVector<QString> const& modeNames)
    : DisplayModeActions(backend, kConfiguration)
    , mModeNames(modeNames)
{
    describeAs("MultiMonitorModeActions").files.append(kPreferencesFile);
}

QStringList MultiMonitorModeActions::keysIn(QString const& directory) const
{
    return QStringList() << directory + QLatin1String("/secondaryprofile")
                         << directory + QLatin1String("/secondarymode");
}

bool MultiMonitorModeActions::readView(QStringList const& keys, QVariant& value)
{
    QString profile;
    if (!read(keys.first(), profile))
        return false;
    if (profile == kNoProfile) {
        value = QString(kDisable);
        return true;
    }

    int mode = 0;
    if (!read(keys.last(), mode))
        return false;
    value = mModeNames.value(mode, mModeNames.value(0));
    return true;
}

bool MultiMonitorModeActions::writeView(QStringList const& keys, QVariant& value)
{
    QString const name = value.toString();
    if (name == kDisable)
        return write(keys, QStringList() << kNoProfile << kFirstMode);

    QString profile;
    if (!readSecondaryProfile(profile))
        return false;
    int const mode = qMax(mModeNames.indexOf(name), 0);
    return write(keys, QStringList() << profile << QString::number(mode));
}

bool MultiMonitorModeActions::readSecondaryProfile(QString& profile)
{
    if (!usesXgiDriver())
        return readPrimaryLabel(profile);
    profile = kNoProfile;
    return true;
}

RefreshRateActions::RefreshRateActions(Vantora& backend)
    : ProfileModeActions(backend)
{
    describeAs("RefreshRateActions").files.append(kPreferencesFile);
}

QStringList RefreshRateActions::keysIn(QString const& directory) const
{
    return QStringList(directory + QLatin1String("/refresh"));
}

bool RefreshRateActions::readView(QStringList const& keys, QVariant& value)
{
    QString rate;
    if (!read(keys.first(), rate))
        return false;
    value = rate == kAutomatic ? QString(kAuto) : rate;
    return true;
}

bool RefreshRateActions::writeView(QStringList const& keys, QVariant& value)
{
    QString rate = value.toString();
    if (rate == kAuto)
        rate = kAutomatic;
    return allowedRates().contains(rate) && writeAndKeep(keys, rate, value);
}

ResolutionActions::ResolutionActions(Vantora& backend)
    : ProfileModeActions(backend)
{
    describeAs("ResolutionActions");
}

QStringList ResolutionActions::keysIn(QString const& directory) const
{
    return QStringList() << directory + QLatin1String("/width")
                         << directory + QLatin1String("/height");
}

bool ResolutionActions::readView(QStringList const& keys, QVariant& value)
{
    QString width;
    QString height;
    if (!read(keys.first(), width) || !read(keys.last(), height))
        return false;
    if (width == kAutomatic && height == kAutomatic)
        value = QString(kAuto);
    else
        value = QString(width + QLatin1Char('x') + height);
    return true;
}

bool ResolutionActions::writeView(QStringList const& keys, QVariant& value)
{
    return write(keys, captures("^(\\d+)x(\\d+)", value.toString(), kAutomatic));
}

PrimaryMonitorActions::PrimaryMonitorActions(Vantora& backend)
    : DisplayModeActions(backend, kConfiguration)
{
    describeAs("PrimaryMonitorActions");
}

QStringList PrimaryMonitorActions::keysIn(QString const& directory) const
{
    return QStringList(directory + QLatin1String("/swapstate"));
}

bool PrimaryMonitorActions::readView(QStringList const& keys, QVariant& value)
{
    int index = 0;
    // The number after the largest one cannot be told.
    if (!read(keys.first(), index) || index == std::numeric_limits<int>::max())
        return false;
    value = index + 1;
    return true;
}

bool PrimaryMonitorActions::writeView(QStringList const& keys, QVariant& value)
{
    // By way of the text: a variant's own conversion cuts a number that is too large.
    int const number = value.toString().toInt();
    int const index = qMax(number, 1) - 1;
    return write(keys, QStringList(QString::number(index)));
}
