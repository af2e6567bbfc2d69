# shellcheck shell=bash
# Runs Windows programs under Wine, and sets up its prefixes.
#
# Each build folder has its own Wine prefix, so that runs of several checkouts are independent. A prefix keeps its Wine
# server running for a while after the last program (starting a program then takes some hundredths of a second instead
# of a third), and uses the null display driver: windows, messages, drawing and the clipboard work without an X server.

QV_WINE_IDLE_SECONDS=60

# wine_run ARCHITECTURE PROGRAM [ARGUMENT...]: does not return; the exit status is the program's.
wine_run() {
    local architecture=$1 program=$2
    shift
    wine_environment "$architecture" "$(wine_prefix "$architecture" "$program")"
    wine_start
    at_fixed_addresses "$QV_WINE_DIR/$QV_WINE_LOADER" "$@"
}

# Prints the prefix of the build folder that contains the program; programs from elsewhere share one in the cache.
wine_prefix() {
    local folder
    folder=$(cd "$(dirname "$2")" && pwd -P)
    while [ -n "$folder" ]; do
        if [ -e "$folder/CMakeCache.txt" ]; then
            echo "$folder/wine"
            return
        fi
        folder=${folder%/*}
    done
    echo "$QV_CACHE/wine-$1"
}

wine_environment() {
    unset DISPLAY WAYLAND_DISPLAY WINELOADER WINESERVER
    # Of Wine's own messages, show only those of a process that cannot reserve its addresses: it prints nothing else.
    export WINEPREFIX=$2 WINEDEBUG=${WINEDEBUG:--all,err+virtual}
    # Disable offers to install run times and entries in the desktop's menus.
    export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d'
    # The ANSI code page follows the locale: Windows-1252 here. File names are UTF-8.
    export LC_ALL=${QV_WINE_LOCALE:-C.UTF-8} 2> /dev/null
    case $1 in
        x64)
            QV_WINE_DIR=/usr/lib/wine QV_WINE_LOADER=wine64
            export WINEARCH=win64
            ;;
        x86)
            local tree
            tree=$(wine32_tree)
            QV_WINE_DIR=$tree/usr/lib/wine QV_WINE_LOADER=wine
            export WINEARCH=win32 LD_LIBRARY_PATH=$tree/usr/lib/i386-linux-gnu
            ;;
    esac
    [ -x "$QV_WINE_DIR/$QV_WINE_LOADER" ] || fail "Wine is missing; scripts/test windows-$1 installs it"
}

# Creates the prefix and starts its server, if missing. The started processes must not inherit the caller's pipes: a
# caller that waits for end of file would wait for the server.
wine_start() {
    mkdir -p "$(dirname "$WINEPREFIX")"
    exec 9> "$WINEPREFIX.lock"
    flock 9
    [ -e "$WINEPREFIX/complete" ] || wine_make_prefix 9>&- ||
        fail "the Wine prefix $WINEPREFIX could not be made: $(cat "$WINEPREFIX.log")"
    # The server refuses to start if one is running.
    if "$QV_WINE_DIR/wineserver" "-p$QV_WINE_IDLE_SECONDS" < /dev/null > /dev/null 2>&1 9>&-; then
        wine_boot 9>&-
    fi
    exec 9>&-
}

# Stops a server whose start has failed: otherwise the next program would complete the start, and the processes it
# starts would inherit the caller's pipes.
wine_boot() {
    wine_quietly wineboot && return
    "$QV_WINE_DIR/wineserver" -k || true
    fail "Wine could not be started in $WINEPREFIX: $(cat "$WINEPREFIX.log")"
}

wine_make_prefix() {
    rm -rf "$WINEPREFIX"
    wine_quietly wineboot --init &&
        wine_quietly reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f || return
    "$QV_WINE_DIR/wineserver" -k || true
    wine_detach_home
    # The 32-bit half of a 64-bit prefix is not needed.
    rm -rf "$WINEPREFIX/drive_c/windows/syswow64"
    touch "$WINEPREFIX/complete"
}

# wine_quietly PROGRAM [ARGUMENT...]: redirects its output to a log beside the prefix.
wine_quietly() (
    at_fixed_addresses "$QV_WINE_DIR/$QV_WINE_LOADER" "$@" < /dev/null > "$WINEPREFIX.log" 2>&1
)

# Wine links "Documents" and similar folders to the user's own; tests must not write there.
wine_detach_home() {
    find "$WINEPREFIX/drive_c/users" -type l -exec sh -c 'for link; do rm "$link" && mkdir "$link"; done' - {} +
}

# wine_prepare ARCHITECTURE BUILD-FOLDER: does the slow first start before the build, which lists the programs' tests
# under a time limit.
wine_prepare() (
    wine_environment "$1" "$2/wine"
    wine_start
)

# wine_stop ARCHITECTURE BUILD-FOLDER: stops the server of a build folder, and with it every running program.
wine_stop() (
    [ -e "$2/wine/complete" ] || return 0
    wine_environment "$1" "$2/wine"
    "$QV_WINE_DIR/wineserver" -k || true
)

# Prints where the 32-bit Wine is. Each release of the distribution has its own tree.
wine32_tree() {
    local VERSION_CODENAME=unknown
    # shellcheck source=/dev/null
    . /etc/os-release
    echo "$QV_CACHE/wine32-$VERSION_CODENAME"
}
