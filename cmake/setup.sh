# SPDX-License-Identifier: MIT
#
# Sourced by ./run and ./test: installs what the build needs and builds.
#
# Needs `project`, the project's folder; the working directory stays the caller's. Nothing here
# reads standard input, which belongs to the commands of ./run. All messages go to standard error.

kPackages=(
    g++ cmake ninja-build qtbase5-dev libsqlite3-dev libedit-dev libcli11-dev nlohmann-json3-dev
    bubblewrap pkgconf lowdown dbus python3-dbusmock network-manager
)

fail() {
    printf '%s\n' "$@" >&2
    exit 1
}

missingPackages() {
    local known
    known=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${kPackages[@]}" 2>/dev/null)
    local package
    for package in "${kPackages[@]}"; do
        grep -qx "installed $package" <<<"$known" || printf '%s\n' "$package"
    done
}

# Installs the packages that are missing, all or none: they are downloaded before the first one is
# unpacked. With nothing missing it needs neither rights nor a network.
installPackages() {
    command -v dpkg-query >/dev/null \
        || { warnOtherSystem; return; }
    local missing
    mapfile -t missing < <(missingPackages)
    [ ${#missing[@]} -gt 0 ] || return 0

    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get)
    local byHand="apt-get install ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        sudo -n true 2>/dev/null || { [ -t 2 ] && command -v sudo >/dev/null; } \
            || fail "Missing packages: ${missing[*]}" \
                "Installing them needs root. Have an administrator run: $byHand"
        apt=(sudo "${apt[@]}")
    fi
    echo "Installing ${missing[*]}" >&2
    download "${missing[@]}" \
        || fail "Missing packages: ${missing[*]}" \
            "They cannot be downloaded (the messages of apt-get are above); nothing was installed." \
            "With a network, run: $byHand"
    "${apt[@]}" install -y -q --no-install-recommends --no-download "${missing[@]}" \
        </dev/null >&2 || fail "apt-get could not install: ${missing[*]}"
}

# A machine that never asked its package sources knows no package; then they are asked first.
download() {
    local get=("${apt[@]}" install -y -q --no-install-recommends --download-only "$@")
    "${get[@]}" </dev/null >/dev/null 2>&1 && return
    "${apt[@]}" update -q </dev/null >&2
    "${get[@]}" </dev/null >&2
}

warnOtherSystem() {
    local command
    for command in c++ cmake ninja bwrap dbus-daemon; do
        command -v $command >/dev/null \
            || fail "$command is missing, and this is no Debian: install the equivalent of" \
                "  ${kPackages[*]}"
    done
}

# Configures a preset, only when it has to, so that a second call takes no time.
configure() {
    local preset=$1
    local directory=$project/build/$preset
    if [ ! -e "$directory/build.ninja" ] \
        || [ "$project/CMakePresets.json" -nt "$directory/build.ninja" ] \
        || ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$project" "$directory/CMakeCache.txt"; then
        # --fresh: a build folder that came along with a moved project points to the old place.
        cmake -S "$project" --preset "$preset" --fresh </dev/null >&2 || exit 1
    fi
}

# Builds the targets of a preset, or all of it.
build() {
    local preset=$1
    shift
    configure "$preset"
    # The lines with which ninja says that there is nothing to do would head every answer.
    cmake --build "$project/build/$preset" ${@:+--target "$@"} </dev/null 2>&1 \
        | grep --line-buffered -v -e 'Re-checking globbed' -e 'ninja: no work to do' >&2
    [ "${PIPESTATUS[0]}" -eq 0 ] || exit 1
}
