# Sourced by ./test: what clang-tidy and cppcheck find in the sources.
#
# Needs `project`, the project's folder, and cmake/setup.sh. What they look for stands in .clang-tidy,
# what they shall overlook in .cppcheck-suppressions and beside the line.

kAnalysed=(src host doctor)
kPackages+=(clang-tidy cppcheck)

# @return 0 when neither has found anything.
analyse() {
    installPackages
    configure dev
    local found=0
    runClangTidy || found=1
    runCppcheck || found=1
    [ $found -eq 0 ] && echo "clang-tidy and cppcheck have found nothing."
    return $found
}

runClangTidy() {
    local folders
    folders=$(IFS='|'; echo "${kAnalysed[*]}")
    # It prints each command, and how many warnings there are in the toolkit's headers.
    run-clang-tidy -quiet -p "$project/build/dev" -j "$(nproc)" \
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
