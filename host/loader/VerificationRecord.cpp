// SPDX-License-Identifier: MIT

#include "loader/VerificationRecord.h"

#include <QList>
#include <QStringList>

namespace {

char const* const kPattern = "QT_PLUGIN_VERIFICATION_DATA";
int const kMajorVersion = 4;
int const kHighestMinorVersion = 8;
char const* const kDebug = "false";
// The platform's, whatever machine the stand-in host runs on: it is the plugin that is checked.
char const* const kBuildKey = "arm linux g++-4 full-config";

// Of a value that is not ours no more than this is repeated to a person.
int const kShownCharacters = 60;

/// The value of the first line that begins with `name` and "="; null if there is none.
QString field(QByteArray const& text, char const* name)
{
    QByteArray const start = QByteArray(name) + '=';
    QList<QByteArray> const lines = text.split('\n');
    for (QByteArray const& line : lines) {
        if (line.startsWith(start))
            return QString::fromLatin1(line.constData() + start.size(), line.size() - start.size());
    }
    return QString();
}

QString quoted(QString const& value)
{
    if (value.isNull())
        return QLatin1String("nothing");
    return QLatin1Char('"') + value.left(kShownCharacters) + QLatin1Char('"');
}

QString difference(char const* what, QString const& found, QString const& expected)
{
    return QString::fromLatin1("its %1 is %2, this host loads %3")
        .arg(QLatin1String(what), quoted(found), expected);
}

} // namespace

VerificationRecord::VerificationRecord(QByteArray const& text)
    : mPattern(field(text, "pattern"))
    , mVersion(field(text, "version"))
    , mDebug(field(text, "debug"))
    , mBuildKey(field(text, "buildkey"))
{
}

QString VerificationRecord::mismatch() const
{
    if (mPattern != QLatin1String(kPattern))
        return difference("verification pattern", mPattern, quoted(QLatin1String(kPattern)));
    if (!hasFittingVersion())
        return difference(
            "Qt version", mVersion,
            QString::fromLatin1("%1.0 to %1.%2").arg(kMajorVersion).arg(kHighestMinorVersion));
    if (mDebug != QLatin1String(kDebug))
        return difference("debug flag", mDebug, quoted(QLatin1String(kDebug)));
    if (mBuildKey != QLatin1String(kBuildKey))
        return difference("build key", mBuildKey, quoted(QLatin1String(kBuildKey)));
    return QString();
}

bool VerificationRecord::hasFittingVersion() const
{
    QStringList const parts = mVersion.split(QLatin1Char('.'));
    if (parts.size() < 2)
        return false;
    bool majorIsNumber = false;
    bool minorIsNumber = false;
    int const majorVersion = parts.at(0).toInt(&majorIsNumber);
    int const minorVersion = parts.at(1).toInt(&minorIsNumber);
    return majorIsNumber && minorIsNumber && majorVersion == kMajorVersion && minorVersion >= 0
        && minorVersion <= kHighestMinorVersion;
}
