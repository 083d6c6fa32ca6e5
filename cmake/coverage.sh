# SPDX-License-Identifier: MIT
#
# Sourced by ./test: which lines of the plugin the tests have reached.
#
# Needs `project`, the project's folder.

# Every process that ends adds its counts to what is there; one that is killed adds none.
forgetCounts() {
    find "$project/build/coverage" -name '*.gcda' -delete
}

# Prints the lines and branches reached of each folder of src/ and of all of it, and the lines that
# were not.
reportCoverage() {
    local results=$project/build/coverage
    # Branches that the compiler makes for exceptions are nobody's to test.
    gcovr --root "$project" --object-directory "$results" --filter "$project/src/" \
        --exclude-throw-branches --exclude-unreachable-branches \
        --csv "$results/coverage.csv" --json "$results/coverage.json" || exit 1
    sumFolders "$results/coverage.csv"
    listMissed "$results/coverage.json"
}

sumFolders() {
    awk -F, '
        function show(folder) {
            printf "%-24s %5d of %5d lines, %5d of %5d branches\n", folder,
                lines[folder], allLines[folder], branches[folder], allBranches[folder]
        }
        function add(folder) {
            allLines[folder] += $2; lines[folder] += $3
            allBranches[folder] += $5; branches[folder] += $6
        }
        NR > 1 {
            folder = $1
            sub("/[^/]*$", "", folder)
            if (!(folder in lines))
                folders[++count] = folder
            add(folder)
            if (folder != "src")
                add("src")
        }
        END {
            for (i = 1; i <= count; ++i)
                show(folders[i])
            show("src")
        }' "$1"
}

# As FILE:LINE: and the line, so that an editor finds it.
listMissed() {
    python3 - "$project" "$1" <<'END'
import json
import os
import sys

project, report = sys.argv[1:]
with open(report) as file:
    files = json.load(file)["files"]
for entry in sorted(files, key=lambda entry: entry["file"]):
    missed = [line["line_number"] for line in entry["lines"]
              if line["count"] == 0 and not line.get("gcovr/noncode")]
    if not missed:
        continue
    with open(os.path.join(project, entry["file"])) as source:
        text = source.read().splitlines()
    for number in missed:
        print(f"{entry['file']}:{number}: {text[number - 1].strip()}")
END
}
