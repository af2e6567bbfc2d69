# shellcheck shell=bash
# Shared by all commands: the root of the tree, error messages, and the cache folder.

# shellcheck disable=SC2034
QV_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
# shellcheck disable=SC2034
QV_CACHE=${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/qvcommon

say() {
    printf '==> %s\n' "$*"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# use PART...: sources other files of this folder.
use() {
    local part
    for part in "$@"; do
        # shellcheck source=/dev/null
        . "$QV_ROOT/scripts/lib/$part.sh"
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo > /dev/null; then
        sudo "$@"
    else
        fail "this needs administrator rights (run it as root, or install sudo): $*"
    fi
}

# at_fixed_addresses COMMAND...: executes the command without address space randomization, if the system permits it.
at_fixed_addresses() {
    ! setarch -R true 2> /dev/null || exec setarch -R "$@"
    exec "$@"
}

# Every command prints the comment at its top for --help.
case ${1:-} in
    -h | --help)
        sed -n '2,/^[^#]/ s/^# \{0,1\}//p' "$0"
        exit
        ;;
esac
