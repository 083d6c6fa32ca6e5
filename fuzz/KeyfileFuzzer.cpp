// SPDX-License-Identifier: MIT

// The input is a keyfile, or settings for a new one: with a first byte of 's' it is an SSID, a
// security type and a passphrase, separated by 0xff, else the rest of it is the file.

#include "Fuzzing.h"
#include "wireless/NMConfFile.h"

#include <QFile>
#include <QStringList>

namespace {

char const kSettings = 's';
char const kSeparator = '\xff';

QString fileName()
{
    return QLatin1String("/tmp/fuzzed/connection");
}

/// What the file says after it was read and written once more.
QString secondPass()
{
    NMConfFile connection(fileName());
    connection.sync();
    return connection.toString();
}

bool isLatin1(QString const& text)
{
    return QString::fromLatin1(text.toLatin1().constData()) == text;
}

/// Whether reading the line gives all of it: blanks at its ends are dropped, a NUL ends it, and a
/// value loses what stands before its last "=".
bool isReadWhole(QString const& line)
{
    QByteArray const bytes = line.toLatin1();
    return isLatin1(line) && bytes == bytes.trimmed() && line.count(QLatin1Char('=')) <= 1
        && !line.contains(QChar(0));
}

bool isReadWhole(QStringList const& lines)
{
    for (QString const& line : lines) {
        if (!isReadWhole(line))
            return false;
    }
    return true;
}

void checkGetters(NMConfFile const& connection)
{
    fuzzCheck(!connection.ssid().isNull() && !connection.passphrase().isNull(),
              "the texts of a keyfile are never null");
    QString const security = connection.security();
    fuzzCheck(security == QLatin1String("none") || security == QLatin1String("WEP")
                  || security == QLatin1String("WPA Personal"),
              "the security type is one of three");
}

/// Reads and writes the file twice. What was written is the same text each time, but for lines that
/// are not read whole the first time.
void checkStable(QString const& written)
{
    QString const second = secondPass();
    fuzzCheck(second == written || !isReadWhole(written.split(QLatin1Char('\n'))),
              "what was written once reads the same");
    fuzzCheck(secondPass() == second, "what was written twice reads the same");
}

void checkFile(QByteArray const& content)
{
    fuzzWriteFile(fileName(), content);
    NMConfFile connection(fileName());
    checkGetters(connection);
    connection.sync();
    checkStable(connection.toString());
}

void checkSettings(QList<QByteArray> const& settings)
{
    QFile::remove(fileName());
    QString const ssid = fuzzText(settings.value(0));
    QString const passphrase = fuzzText(settings.value(2));
    NMConfFile connection(fileName());
    connection.setSsid(ssid);
    connection.setSecurity(fuzzText(settings.value(1)));
    connection.setPassphrase(passphrase);
    checkGetters(connection);
    fuzzCheck(connection.ssid().size() == ssid.size()
                  && (!isLatin1(ssid) || connection.ssid() == ssid),
              "an SSID is read as it was set");
    bool const isOpen = connection.security() == QLatin1String("none");
    fuzzCheck(connection.passphrase() == (isOpen ? QString() : passphrase),
              "a passphrase is read as it was set");
    connection.sync();

    fuzzCheck(NMConfFile(fileName()).ssid() == connection.ssid(),
              "an SSID is read as it was written");
    // What cannot stand in a line of a file is refused before it gets here; if it did, it would be
    // cut or make lines of its own.
    bool const sReadsBack = NMConfFile::sReadsBack(passphrase);
    fuzzCheck(!sReadsBack || NMConfFile(fileName()).passphrase() == connection.passphrase(),
              "a passphrase is read as it was written");
    checkStable(sReadsBack ? connection.toString() : secondPass());
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QByteArray const input = fuzzBytes(data, size);
    if (input.startsWith(kSettings))
        checkSettings(input.mid(1).split(kSeparator));
    else
        checkFile(input.mid(1));
    return 0;
}
