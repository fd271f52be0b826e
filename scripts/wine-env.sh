# Sourced by the scripts: the Wine settings that keep runs fast, quiet and deterministic.
# A private prefix inside build/, the null display driver (real windows, GDI and messages
# without an X server), no Mono/Gecko prompts, no menu integration, crashes fail instead
# of hanging in the debugger.
tarn_root=${tarn_root:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
export WINEPREFIX=${TARN_WINEPREFIX:-$tarn_root/build/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
export WINEARCH=win64
WINE64=/usr/lib/wine/wine64
WINE32=/usr/lib/wine/wine
WINESERVER=/usr/lib/wine/wineserver

# Unix path -> Z:\ path for Wine programs.
winpath() { local p; p=$(readlink -f "$1"); echo "Z:${p//\//\\}"; }

# Which of Wine's sides are installed. A prefix made while only the 64-bit side was there
# cannot run 32-bit programs even after the 32-bit side arrives, so the prefix's ready marker
# records the sides it was made with and a change makes it again.
tarn_wine_sides() { if [ -x "$WINE32" ] && [ -e /usr/lib/i386-linux-gnu/wine ]; then echo "64+32"; else echo "64"; fi; }

# Creates and configures the prefix once (again when the installed sides changed); later calls
# return at once.
tarn_wine_prefix() {
    local sides
    sides=$(tarn_wine_sides)
    [ "$(cat "$WINEPREFIX/.tarn-ready" 2>/dev/null)" = "$sides" ] && return 0
    mkdir -p "$(dirname "$WINEPREFIX")"
    (
        flock 9
        [ "$(cat "$WINEPREFIX/.tarn-ready" 2>/dev/null)" = "$sides" ] && exit 0
        if [ -d "$WINEPREFIX" ]; then
            $WINESERVER -k 2>/dev/null
            rm -rf "$WINEPREFIX"
        fi
        local display=${DISPLAY-}
        unset DISPLAY
        $WINE64 wineboot -i >/dev/null 2>&1
        $WINESERVER -w
        $WINE64 reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
        # In both registry views: a 32-bit program that crashes reads the 32-bit one.
        for view in 64 32; do
            $WINE64 reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Auto /d 0 /f /reg:$view >/dev/null 2>&1
            $WINE64 reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f /reg:$view >/dev/null 2>&1
        done
        # A prefix for tests at another screen resolution (TARN_LOGPIXELS=144).
        if [ -n "${TARN_LOGPIXELS:-}" ]; then
            $WINE64 reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$TARN_LOGPIXELS" /f >/dev/null 2>&1
        fi
        # Wine's own Tahoma and MS Sans Serif are found only from the prefix's font folder.
        cp /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/" 2>/dev/null
        $WINESERVER -k 2>/dev/null; $WINESERVER -w
        echo "$sides" > "$WINEPREFIX/.tarn-ready"
    ) 9>"$WINEPREFIX.lock"
}

# A Wine session for a test run: both test prefixes made ready, and in each one wineserver and
# one desktop kept alive until tarn_wine_session_stop, started here with their output away from
# the tests. A Wine service that a test happened to start would inherit that test's output
# pipe, and ctest would wait on it until the test's timeout; restarting the desktop for every
# test process would also cost a second each.
tarn_wine_session_start() {
    local prefix ready waited
    tarn_wine_prefix
    TARN_WINEPREFIX=$tarn_root/build/wine-144dpi TARN_LOGPIXELS=144 bash -c '. "$0/scripts/wine-env.sh"; tarn_wine_prefix' "$tarn_root"
    tarn_keepers=()
    for prefix in "$WINEPREFIX" "$tarn_root/build/wine-144dpi"; do
        ready=$prefix.keeper-ready waited=0
        rm -f "$ready"
        WINEPREFIX=$prefix $WINESERVER -p </dev/null >/dev/null 2>&1
        WINEPREFIX=$prefix $WINE64 "$tarn_root/build/x64/bin/wine_keeper.exe" "$(winpath "$ready")" </dev/null >/dev/null 2>&1 &
        tarn_keepers+=($!)
        while [ ! -f "$ready" ] && [ $waited -lt 600 ]; do sleep 0.1; waited=$((waited + 1)); done
        [ -f "$ready" ] || echo "wine-env: the desktop of $prefix did not start within a minute" >&2
    done
}
tarn_wine_session_stop() {
    kill "${tarn_keepers[@]}" 2>/dev/null
    local prefix
    for prefix in "$WINEPREFIX" "$tarn_root/build/wine-144dpi"; do WINEPREFIX=$prefix $WINESERVER -k 2>/dev/null; done
}
