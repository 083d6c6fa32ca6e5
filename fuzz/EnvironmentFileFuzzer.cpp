// SPDX-License-Identifier: MIT

// The input is an environment file. Each declaration is one that a file can hold, and a file made
// of what was read reads the same.

#include "Fuzzing.h"
#include "actions/registry/EnvironmentFile.h"

namespace {

char const kFile[] = "/tmp/fuzzed/set.env";

int const kLongestPiece = 1023;

void checkDeclaration(EnvironmentDeclaration const& declaration)
{
    QString const line = declaration.name + QLatin1Char('=') + declaration.registryKey;
    fuzzCheck(!declaration.name.isEmpty() && !declaration.name.contains(QLatin1Char('=')),
              "a declaration has a name before its first \"=\"");
    fuzzCheck(line == line.trimmed(), "a declaration has no blanks at its ends");
    fuzzCheck(!line.contains(QChar(0)) && !line.contains(QLatin1Char('\n')),
              "a declaration ends at a NUL or at the end of its line");
    fuzzCheck(line.size() <= kLongestPiece, "a declaration is no longer than a piece");
    fuzzCheck(QString::fromLatin1(line.toLatin1().constData()) == line,
              "a declaration is made of Latin-1");
}

QByteArray fileOf(QList<EnvironmentDeclaration> const& declarations)
{
    QByteArray content;
    for (EnvironmentDeclaration const& declaration : declarations)
        content += declaration.name.toLatin1() + '=' + declaration.registryKey.toLatin1() + '\n';
    return content;
}

QList<EnvironmentDeclaration> read(QByteArray const& content)
{
    QString const fileName = QLatin1String(kFile);
    fuzzWriteFile(fileName, content);
    return readEnvironmentFile(fileName);
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QList<EnvironmentDeclaration> const declarations = read(fuzzBytes(data, size));
    for (EnvironmentDeclaration const& declaration : declarations)
        checkDeclaration(declaration);

    QByteArray const content = fileOf(declarations);
    fuzzCheck(fileOf(read(content)) == content, "what was read and written reads the same");
    return 0;
}
