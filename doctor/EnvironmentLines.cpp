// SPDX-License-Identifier: MIT

#include "doctor/EnvironmentLines.h"

#include <QRegExp>

namespace {

/// Whether a line that declares nothing was meant to: a registry key, alone or behind a name.
bool looksLikeDeclaration(QByteArray const& line)
{
    QRegExp const declaration(
        QLatin1String("(export\\s+)?([A-Za-z_][A-Za-z0-9_]*\\s*:?\\s+)?(root|tmp)/\\S+"));
    return declaration.exactMatch(QString::fromLatin1(line.constData(), line.size()).trimmed());
}

bool isVariableName(QString const& name)
{
    return QRegExp(QLatin1String("[A-Za-z_][A-Za-z0-9_]*")).exactMatch(name);
}

/// Counts the lines of the file, which the plugin reads in pieces.
class LineReader
{
public:
    explicit LineReader(EnvironmentLines& lines)
        : mLines(lines)
        , mNumber(0)
        , mIsContinued(false)
        , mHasCarriageReturn(false)
    {
    }

    void add(EnvironmentFileReader const& reader)
    {
        QByteArray const bytes = reader.bytes();
        if (!mIsContinued)
            ++mNumber;
        else if (!bytes.trimmed().isEmpty())
            problem(QString::fromLatin1("the line is too long: what stands behind its first %1 "
                                        "bytes is read as a line of its own")
                        .arg(kLongestEnvironmentLine));
        mIsContinued = !bytes.endsWith('\n');
        if (bytes.contains('\0'))
            problem(QLatin1String("everything after the NUL byte is ignored"));
        if (bytes.endsWith("\r\n") && !mHasCarriageReturn) {
            mHasCarriageReturn = true;
            problem(QLatin1String(
                "the line ends in CRLF; the CR is dropped here, but not in a script"));
        }
        if (reader.isDeclaration())
            addDeclaration(reader.declaration());
        else
            addOther(bytes);
    }

private:
    void addDeclaration(EnvironmentDeclaration const& declaration)
    {
        if (!isVariableName(declaration.name)) {
            problem(QString::fromLatin1("no script can read a variable named \"%1\"")
                        .arg(declaration.name));
            return;
        }
        DeclarationLine const line = {mNumber, declaration};
        mLines.declarations.append(line);
    }

    void addOther(QByteArray const& bytes)
    {
        if (bytes.contains('='))
            problem(QLatin1String("the line is ignored: no name stands before its \"=\""));
        else if (looksLikeDeclaration(bytes))
            problem(QLatin1String("the line is ignored: there is no \"=\" in it"));
    }

    void problem(QString const& message)
    {
        Problem const one = {Fault, mNumber, message};
        mLines.problems.append(one);
    }

    EnvironmentLines& mLines;
    int mNumber;
    bool mIsContinued;
    bool mHasCarriageReturn;
};

} // namespace

bool DeclarationLine::isTarget() const
{
    return declaration.name == QLatin1String(kRegSet);
}

EnvironmentLines readEnvironmentLines(QString const& fileName)
{
    EnvironmentLines lines;
    LineReader lineReader(lines);
    EnvironmentFileReader reader(fileName);
    while (reader.next())
        lineReader.add(reader);
    return lines;
}
