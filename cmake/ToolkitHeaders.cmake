# SPDX-License-Identifier: MIT
#
# A good part of each compilation is the toolkit's headers. They are compiled once for the plugin,
# and once for the host and the doctor. A file includes what it uses all the same: ./test --analyse
# looks at files without these headers.
set(ZELVO_TOOLKIT_HEADERS
    <QByteArray> <QDir> <QFile> <QFileInfo> <QList> <QMap> <QObject> <QScopedPointer> <QSet> <QString>
    <QStringList> <QVariant>)

# zelvo_precompile_toolkit(TARGET [OTHER])
#
# With OTHER, a target that is compiled in the same way, those of that are taken.
function(zelvo_precompile_toolkit target)
    # g++ can be asked whether what was compiled before is of use.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Werror=invalid-pch>)
    if(ARGN)
        target_precompile_headers(${target} REUSE_FROM ${ARGN})
    else()
        target_precompile_headers(${target} PRIVATE ${ZELVO_TOOLKIT_HEADERS})
    endif()
endfunction()
