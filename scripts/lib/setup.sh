# Shared by the scripts: stops on the first error, knows the root of the tree, installs what is missing. Sourced.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

fail() {
    say "$*"
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

is_installed() {
    [ "$(dpkg-query --show --showformat '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Silent unless it fails.
apt_get() {
    local output
    if ! output=$(as_root env DEBIAN_FRONTEND=noninteractive apt-get --quiet "$@" 2>&1 </dev/null); then
        printf '%s\n' "$output" >&2
        return 1
    fi
}

# need_packages <package>...: installs those that are missing. Does nothing, and needs no rights, if none is. On a
# system without dpkg it only names them.
need_packages() {
    if ! command -v dpkg-query >/dev/null; then
        say "not a Debian system: taking for granted what these packages hold there: $*"
        return
    fi
    local package missing=()
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if [ "${#missing[@]}" -eq 0 ]; then
        return
    fi
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        fail "packages are missing, and only root can install them: apt-get install ${missing[*]}"
    fi
    say "installing ${missing[*]}"
    apt_get update || fail "apt-get update failed: is there a network?"
    apt_get install --yes --no-install-recommends "${missing[@]}" || fail "could not install ${missing[*]}"
}
