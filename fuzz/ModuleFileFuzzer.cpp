// SPDX-License-Identifier: MIT

// The input is a module of a 64-bit machine, or what calls itself one. It is whole with all its
// parts only, and still is with more behind it; one that lacks a part still does when it is cut
// shorter, down to the header that says so.

#include "Fuzzing.h"
#include "loader/ModuleFile.h"

#include <cstddef>
#include <cstring>

#include <link.h>

namespace {

int const kHeaderSize = sizeof(ElfW(Ehdr));

bool isComplete(QByteArray const& content)
{
    QString const fileName = QLatin1String("/tmp/fuzzed/module.so");
    fuzzWriteFile(fileName, content);
    return isCompleteModule(fileName);
}

/// Whether a part that the header names begins behind the end of the module, or is larger than it.
bool hasTooLargePart(QByteArray const& module)
{
    ElfW(Ehdr) header;
    std::memcpy(&header, module.constData(), kHeaderSize);
    std::size_t const size = static_cast<std::size_t>(module.size());
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part;
        std::size_t const offset = header.e_phoff + i * sizeof part;
        if (offset > size || sizeof part > size - offset)
            return true;
        std::memcpy(&part, module.constData() + offset, sizeof part);
        if (part.p_type == PT_LOAD && (part.p_offset > size || part.p_filesz > size))
            return true;
    }
    return false;
}

bool isModule(QByteArray const& content)
{
    return sizeof(void*) == 8 && content.size() >= kHeaderSize && content.startsWith("\177ELF\2")
        && content.mid(offsetof(ElfW(Ehdr), e_phentsize), 2) == QByteArray("\x38\0", 2);
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QByteArray const module = fuzzBytes(data, size);
    bool const isWhole = isComplete(module);
    fuzzCheck(isWhole || module.startsWith("\177ELF"), "what is no module lacks nothing");
    if (!isModule(module))
        return 0;
    fuzzCheck(!isWhole || !hasTooLargePart(module), "a module is whole with all its parts only");
    if (isWhole)
        fuzzCheck(isComplete(module + module), "a whole module can have more behind it");
    else
        fuzzCheck(!isComplete(module.left(kHeaderSize + (module.size() - kHeaderSize) / 2)),
                  "a module that lacks a part is not made whole by cutting it");
    return 0;
}
