#!/usr/bin/env bash
# The gallery: every control of the library in a real host window. With a display (DISPLAY set)
# the window opens and stays until closed; without one (CI, a server) the gallery is rendered
# to build/gallery.png and the script exits 0. Installs what is missing first; safe to run again.
set -uo pipefail
tarn_root=$(cd "$(dirname "$0")/.." && pwd)
cd "$tarn_root"
scripts/deps.sh || exit 1
cmake --preset x64 >/dev/null && cmake --build --preset x64 --target gallery tarnctls -j "$(nproc)" || exit 1

. scripts/wine-env.sh
dll=$(winpath build/x64/bin/tarnctls.dll)
if [ -n "${DISPLAY:-}" ]; then
    # An interactive prefix of its own: the test prefix uses Wine's null display driver.
    export WINEPREFIX=$tarn_root/build/wine-display
    if [ ! -f "$WINEPREFIX/.tarn-ready" ]; then
        $WINE64 wineboot -i >/dev/null 2>&1; $WINESERVER -w
        cp /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/" 2>/dev/null
        touch "$WINEPREFIX/.tarn-ready"
    fi
    $WINE64 regsvr32 /s "$dll"
    exec $WINE64 build/x64/bin/gallery.exe
fi
unset DISPLAY
tarn_wine_prefix
$WINE64 regsvr32 /s "$dll" || { echo "gallery: registration failed"; exit 1; }
$WINE64 build/x64/bin/gallery.exe --png "$(winpath build)\\gallery.png" || exit 1
mkdir -p build/gallery-editors
$WINE64 build/x64/bin/gallery.exe --editors "$(winpath build/gallery-editors)" || exit 1
echo "gallery: wrote $tarn_root/build/gallery.png and the editors' pictures in build/gallery-editors/"
