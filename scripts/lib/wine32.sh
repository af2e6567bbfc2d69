# shellcheck shell=bash
# Installs the 32-bit Wine for windows-x86 into the cache.
#
# Wine for i386 and all its libraries are unpacked into one folder of the cache and run from there. That needs no root
# privileges, does not change the machine's packages, and works even if the machine's 64-bit packages and the archive's
# 32-bit ones have different versions, which the package manager refuses to install together.

# need_wine32: creates the tree unless it exists. It gets its final name when it is complete.
need_wine32() {
    local tree
    tree=$(wine32_tree)
    [ -d "$tree" ] && return
    mkdir -p "$QV_CACHE"
    exec 8> "$tree.lock"
    flock 8
    if [ ! -d "$tree" ]; then
        say "Unpacking 32-bit Wine into $tree (about 140 MB to load, once)"
        rm -rf "$tree.new"
        wine32_load "$tree.new/apt"
        wine32_unpack "$tree.new/apt/archives" "$tree.new/root"
        wine32_settle "$tree.new/root" "$tree"
        mv -T "$tree.new/root" "$tree"
        rm -rf "$tree.new"
    fi
    exec 8>&-
}

# wine32_load FOLDER: downloads the packages with a separate package manager state, in which nothing is installed.
wine32_load() {
    local state=$1 source
    source=$(wine32_source)
    mkdir -p "$state/lists/partial" "$state/archives/partial"
    : > "$state/status"
    echo "$source" > "$state/sources.list"
    wine32_apt "$state" update || fail "the 32-bit package list could not be loaded"
    wine32_apt "$state" install -y --no-install-recommends --download-only wine32 ||
        fail "the 32-bit Wine packages could not be loaded"
}

# Prints the archive that the machine installs from, as a line of a source list.
wine32_source() {
    local VERSION_CODENAME=unknown uri
    # shellcheck source=/dev/null
    . /etc/os-release
    # shellcheck disable=SC2016 # the names are the package manager's
    uri=$(apt-get indextargets --no-release-info --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
        sed -n "s/^$VERSION_CODENAME main //p" | head -n 1)
    [ -n "$uri" ] || fail "the machine's package sources name no archive of $VERSION_CODENAME"
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $uri $VERSION_CODENAME main"
}

wine32_apt() {
    local state=$1
    shift
    apt-get -qq -o APT::Sandbox::User=root \
        -o APT::Architecture=i386 -o APT::Architectures=i386 -o Acquire::Languages=none \
        -o Dir::State="$state" -o Dir::State::status="$state/status" -o Dir::Cache="$state" \
        -o Dir::Etc::sourcelist="$state/sources.list" -o Dir::Etc::sourceparts=/dev/null \
        -o Dir::Etc::preferences=/dev/null -o Dir::Etc::preferencesparts=/dev/null "$@" > /dev/null
}

# wine32_unpack ARCHIVES ROOT: /lib and /usr/lib are one folder, as on an installed system.
wine32_unpack() {
    mkdir -p "$2/usr/lib"
    ln -s usr/lib "$2/lib"
    local package
    for package in "$1"/*.deb; do
        dpkg-deb --fsys-tarfile "$package" | tar -x -C "$2" --no-same-owner --keep-directory-symlink \
            --exclude='./usr/share/doc/*' --exclude='./usr/share/locale/*'
    done
}

# wine32_settle ROOT FINAL-NAME: makes the unpacked tree work under its final name.
wine32_settle() {
    local root=$1 tree=$2 program
    for program in wine wineserver32; do
        patchelf --set-interpreter "$tree/usr/lib/i386-linux-gnu/ld-linux.so.2" "$root/usr/lib/wine/$program"
    done
    printf '#!/bin/sh\nexec "%s/usr/lib/wine/wineserver32" "$@"\n' "$tree" > "$root/usr/lib/wine/wineserver"
    wine32_adopt_zlib "$root"
}

# Wine loads this library as a builtin, which it recognizes by a signature after the DOS header. The package adds it
# when it is configured; here it is only unpacked.
wine32_adopt_zlib() {
    local library=$1/usr/i686-w64-mingw32/lib/zlib1.dll
    [ -e "$library" ] || return 0
    local own=$1/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
    cp "$library" "$own"
    printf 'Wine builtin DLL%b' '\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' |
        dd of="$own" bs=1 seek=64 conv=notrunc status=none
}
