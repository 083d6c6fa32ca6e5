// SPDX-License-Identifier: MIT

#include "loader/ModuleFile.h"

#include <QFile>
#include <QString>

#include <cstring>

#include <elf.h>
#include <link.h>

namespace {

typedef ElfW(Ehdr) Header;
typedef ElfW(Phdr) Part;

/// Reads one structure of the file at `offset`; false when the file ends before.
template <typename Structure> bool readAt(QFile& file, quint64 offset, Structure& structure)
{
    if (offset > quint64(file.size()) || !file.seek(qint64(offset)))
        return false;
    return file.read(reinterpret_cast<char*>(&structure), sizeof structure)
        == qint64(sizeof structure);
}

bool isHeaderOfThisMachine(Header const& header)
{
    unsigned char const classOfThisMachine = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0
        && header.e_ident[EI_CLASS] == classOfThisMachine && header.e_phentsize == sizeof(Part);
}

bool isThere(Part const& part, quint64 fileSize)
{
    return part.p_type != PT_LOAD
        || (part.p_offset <= fileSize && part.p_filesz <= fileSize - part.p_offset);
}

} // namespace

bool isCompleteModule(QString const& fileName)
{
    QFile file(fileName);
    Header header;
    if (!file.open(QIODevice::ReadOnly) || !readAt(file, 0, header)
        || !isHeaderOfThisMachine(header))
        return true;
    for (int i = 0; i < header.e_phnum; ++i) {
        Part part;
        if (!readAt(file, header.e_phoff + quint64(i) * sizeof(Part), part)
            || !isThere(part, quint64(file.size())))
            return false;
    }
    return true;
}
