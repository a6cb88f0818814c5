# Sourced by ./run and ./test: installs what is missing and builds. Needs no HOME and no network
# when everything is installed.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
build_root=${BEXTORA_BUILD_DIR:-$root/build}

fail() {
    printf '%s\n' "$@" >&2
    exit 2
}

listed_packages() {
    sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$root/tools/packages.txt"
}

missing_packages() {
    local package state
    while read -r package; do
        state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) || state=
        [ "$state" = installed ] || printf '%s\n' "$package"
    done < <(listed_packages)
}

# Runs a command as root, whoever we are.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "These packages are missing, and installing them needs root or sudo:" \
            "  $(missing_packages | tr '\n' ' ')"
    fi
}

install_missing() {
    local missing
    command -v dpkg-query >/dev/null || fail \
        "This is no Debian system. Install these yourself, then build with cmake --preset release:" \
        "  $(listed_packages | tr '\n' ' ')"
    mapfile -t missing < <(missing_packages)
    [ ${#missing[@]} -eq 0 ] && return
    command -v apt-get >/dev/null || fail \
        "apt-get is missing; install these by hand: ${missing[*]}"
    echo "Installing: ${missing[*]}" >&2
    # Every output goes to standard error: standard output belongs to the comparison.
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q >&2 ||
        echo "The package lists could not be updated; trying with the old ones." >&2
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
        "${missing[@]}" >&2 || fail "Installing failed; missing: ${missing[*]}"
}

# build PRESET TARGET...: configures once, then lets ninja decide. Two at a time wait in line.
build() {
    local preset=$1 folder=$build_root/$1
    shift
    mkdir -p "$folder" 2>/dev/null && [ -w "$folder" ] || fail \
        "$folder can't be written; set BEXTORA_BUILD_DIR to a folder that can."
    (
        flock 9
        if [ ! -f "$folder/build.ninja" ]; then
            cmake -S "$root" --preset "$preset" -B "$folder" >"$folder/configure.log" 2>&1 || {
                cat "$folder/configure.log" >&2
                fail "Configuring failed; see above."
            }
        fi
        # Quiet when there is nothing to do, so that a second call shows the comparison alone.
        if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
            ninja -C "$folder" "$@" >&2 || fail "Building failed; see above."
        fi
    ) 9>"$folder/lock"
}
