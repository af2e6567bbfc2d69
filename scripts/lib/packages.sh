# shellcheck shell=bash
# Installs the requested Debian packages that are missing.

# The packages for each purpose. A target's compilers are listed with the target, so that only its builds install them.
declare -gA QV_PACKAGES=(
    [build]="cmake make ninja-build g++ ccache pkg-config libcli11-dev libxml2-dev zlib1g-dev"
    [cross]="cmake ninja-build ccache pkg-config libcli11-dev"
    [tests]="7zip cabextract gcab googletest imagemagick libxml2-utils locales netpbm python3 strace
        tzdata"
    [sanitizers]="clang libclang-rt-dev llvm"
    [packages]="dpkg-dev file"
    [install]="fish groff-base lintian zsh"
    [machines]="glusterfs-client glusterfs-server iproute2 procps"
    [format]="clang-format git"
    [docs]="doxygen graphviz python3"
    [tidy]="clang clang-tidy python3"
    [browser]="chromium chromium-driver firefox-esr python3"
    [axe]="npm"
    [windows-x64]="clang g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64"
    [windows-x86]="g++-mingw-w64-i686-posix libz-mingw-w64-dev patchelf"
    [bench]="7zip cabextract dbus-daemon e2fsprogs fd-find gcab inotify-tools libabsl-dev libbenchmark-dev libboost-dev
        libboost-filesystem-dev libboost-locale-dev libboost-thread-dev libdbus-1-dev libdeflate-dev libglib2.0-dev libicu-dev
        libmagickwand-dev libpng-dev libpugixml-dev libsdl2-dev libuemf-dev locales mount python3 qt6-base-dev rhash zlib1g-dev"
)

# The locales that tests and benchmarks of texts, folding and collation use.
QV_LOCALES=(en_US.UTF-8 de_DE.UTF-8 hi_IN.UTF-8 ja_JP.UTF-8 tr_TR.UTF-8 en_US.ISO-8859-1)

# need PURPOSE...: installs the missing packages of these purposes.
need() {
    local purpose package missing=()
    for purpose in "$@"; do
        for package in ${QV_PACKAGES[$purpose]}; do
            is_installed "$package" || missing+=("$package")
        done
    done
    if [ ${#missing[@]} -gt 0 ]; then
        say "Installing for ${*}: ${missing[*]}"
        install_packages "${missing[@]}"
    fi
}

# need_command PURPOSE COMMAND: installs a purpose's packages unless the command exists.
need_command() {
    command -v "$2" > /dev/null || need "$1"
}

# need_for_building PRESET: installs what building and packaging the preset linux or windows-* requires. The build files
# also refer to the tests.
need_for_building() {
    case $1 in
        windows-*) need cross tests "$1" ;;
        *) need build tests packages ;;
    esac
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2> /dev/null)" = installed ]
}

install_packages() {
    has_package_lists || as_root apt-get update -qq || true
    apt_install "$@" && return
    # The package lists may be outdated.
    as_root apt-get update -qq || true
    apt_install "$@" || fail "these packages could not be installed: $*"
}

has_package_lists() {
    compgen -G '/var/lib/apt/lists/*_Packages*' > /dev/null
}

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends \
        -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@" > /dev/null
}

# need_locales: compiles the missing ones of these locales; the machine's configuration is unchanged.
need_locales() {
    local have locale missing=()
    have=$(locale -a | tr '[:upper:]' '[:lower:]' | tr -d -)
    for locale in "${QV_LOCALES[@]}"; do
        grep -qxF "$(tr '[:upper:]' '[:lower:]' <<< "$locale" | tr -d -)" <<< "$have" || missing+=("$locale")
    done
    if [ ${#missing[@]} -gt 0 ]; then
        say "Compiling locales: ${missing[*]}"
        for locale in "${missing[@]}"; do
            as_root localedef -i "${locale%%.*}" -f "${locale#*.}" "$locale" || fail "locale $locale could not be compiled"
        done
    fi
}
