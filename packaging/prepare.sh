# Sourced by `run`, `test` and `.ci/run`, with $root set to the top of the checkout and $script to the name for messages: missing packages and builds.
# Everything said here goes to standard error, and nothing is said when there is nothing to do.

# The status when a script could not do its own part; the program's own statuses are small numbers.
readonly scriptFailed=125

fail() {
    printf '%s: %s\n' "$script" "$*" >&2
    exit "$scriptFailed"
}

# packagesOf SECTION…: the packages of these sections of the list, one a line.
packagesOf() {
    local line section='' wanted=" $* "
    while IFS= read -r line || [[ -n $line ]]; do
        line=${line%%#*}
        line=${line//[[:space:]]/}
        if [[ $line == \[*\] ]]; then
            section=${line:1:-1}
        elif [[ -n $line && $wanted == *" $section "* ]]; then
            printf '%s\n' "$line"
        fi
    done <"$root/packaging/debian-packages.txt"
}

# installPackages SECTION…: installs what is missing, as root or through sudo.
installPackages() {
    local -a packages missing=() become=()
    mapfile -t packages < <(packagesOf "$@")
    if ! command -v dpkg-query >/dev/null; then
        [[ -d $root/build ]] || printf '%s: no Debian system, so nothing is installed here. Needed are the counterparts of: %s\n' "$script" "${packages[*]}" >&2
        return
    fi

    local name state installed=' '
    while read -r name state; do
        if [[ $state == installed ]]; then installed+="$name "; fi
    done < <(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null)
    for name in "${packages[@]}"; do
        [[ $installed == *" $name "* ]] || missing+=("$name")
    done
    ((${#missing[@]})) || return 0

    local command="apt-get install --no-install-recommends ${missing[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "packages are missing, and there is neither root nor sudo to install them. As root: $command"
        become=(sudo)
        # Without a terminal nobody can type a password.
        if ! { : </dev/tty; } 2>/dev/null; then
            sudo -n true 2>/dev/null || fail "packages are missing, and sudo asks for a password without a terminal to type it. As root: $command"
        fi
    fi
    printf '%s: installing %s\n' "$script" "${missing[*]}" >&2
    # An index that is there may be too old to fetch from, so a failure is tried once more with a fresh one.
    local -a install=("${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120 install -y --no-install-recommends "${missing[@]}")
    "${install[@]}" </dev/null >&2 && return
    "${become[@]}" apt-get update </dev/null >&2 && "${install[@]}" </dev/null >&2 || fail "the packages could not be installed. As root: $command"
}

# buildPreset NAME [TARGET…]: configures where that is due, and builds. Two scripts at once wait for each other.
buildPreset() {
    local preset=$1 directory=$root/build/$1 status=0
    shift
    { mkdir -p "$directory" && : >>"$directory.lock"; } 2>/dev/null || fail "cannot write to $root/build; was it made by another user?"
    exec 9>>"$directory.lock"
    flock 9

    # A changed preset or a checkout that was moved makes the configuration stale in ways that ninja does not see.
    local stamp=$directory/.configured-for
    if [[ ! -f $directory/build.ninja || ! -f $stamp || $root/CMakePresets.json -nt $stamp || $(<"$stamp") != "$root" ]]; then
        (cd "$root" && cmake --preset "$preset" --fresh) >&2 || fail 'the build could not be configured; see above'
        printf '%s\n' "$root" >"$stamp"
    fi
    if [[ $(ninja -n -C "$directory" "$@" 2>&1) != *'no work to do'* ]]; then
        ninja -C "$directory" "$@" >&2 || status=$?
    fi
    exec 9>&-
    ((status == 0)) || fail 'the build failed; see above'
}
