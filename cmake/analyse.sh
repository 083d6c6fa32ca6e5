# SPDX-License-Identifier: MIT
#
# Sourced by ./test: what the compiler finds in each header by itself, and clang-format, clang-tidy
# and cppcheck in the sources.
#
# Needs `project`, the project's folder, and cmake/setup.sh. The format stands in .clang-format,
# what is looked for in .clang-tidy, what shall be overlooked in .cppcheck-suppressions and beside
# the line.

kAnalysed=(src host doctor)
kPackages+=(clang-format clang-tidy cppcheck)

# @return 0 when none has found anything.
analyse() {
    installPackages
    local found=0
    (build analyse headers) || found=1
    runClangFormat || found=1
    runClangTidy || found=1
    runCppcheck || found=1
    [ $found -eq 0 ] && echo "The compiler, clang-format, clang-tidy and cppcheck have found nothing."
    return $found
}

runClangFormat() {
    (cd "$project" && find . -path ./build -prune -o -name '*.cpp' -print0 -o -name '*.h' -print0 \
        | xargs -0 clang-format --dry-run -Werror)
}

runClangTidy() {
    local folders
    folders=$(IFS='|'; echo "${kAnalysed[*]}")
    # It prints each command, and how many warnings there are in the toolkit's headers.
    run-clang-tidy -quiet -p "$project/build/analyse" -j "$(nproc)" \
        "^$project/($folders)/.*\\.cpp\$" 2>&1 \
        | grep -v -e '^clang-tidy' -e 'warnings\? generated' -e '^$'
    return "${PIPESTATUS[0]}"
}

# Fast enough to look at everything.
runCppcheck() {
    (cd "$project" && cppcheck --quiet --error-exitcode=1 -j "$(nproc)" --std=c++11 --library=qt \
        --enable=warning,performance,portability --inline-suppr \
        --suppressions-list=.cppcheck-suppressions --template=gcc \
        -I src -I host -I host/include "${kAnalysed[@]}" bench fuzz tests)
}
