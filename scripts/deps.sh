#!/usr/bin/env bash
# Installs what the build and the tests need on Debian 12, only what is missing.
# Safe to run again. The 32-bit Wine side is best effort: when it cannot be
# installed the reason is written to build/x86-status and the x86 tests are
# skipped loudly by scripts/test.sh (the x86 DLL is still built).
set -uo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
status_file="$here/build/x86-status"
mkdir -p "$here/build"

SUDO=""
if [ "$(id -u)" != 0 ]; then
    if command -v sudo >/dev/null; then SUDO="sudo"; else
        echo "deps: not root and no sudo; assuming the packages are installed" >&2; fi
fi
export DEBIAN_FRONTEND=noninteractive

have_pkg() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'; }

PKGS64="g++ cmake ninja-build make googletest libbenchmark-dev clang libclang-rt-14-dev
        g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
        wine64 wine64-tools fonts-wine fonts-liberation curl ca-certificates"
missing=""
for p in $PKGS64; do have_pkg "$p" || missing="$missing $p"; done
updated=0
if [ -n "$missing" ]; then
    echo "deps: installing$missing"
    $SUDO apt-get update -q || echo "deps: apt-get update reported errors, going on" >&2
    updated=1
    $SUDO apt-get install -y -q --no-install-recommends $missing || { echo "deps: install failed" >&2; exit 1; }
fi

# ---- the 32-bit Wine side (runs the x86 tests)
# Wine's two sides must come from one resolution: an i386 library shared with amd64
# (Multi-Arch: same) must have exactly its amd64 twin's version. When a mirror's security
# index is stale or half-synced the two architectures see different versions; what installs
# then is both sides asked for in one request with the security suite lowered for that request
# only (a temporary pin, always removed), the i386 libraries apt reports as blocked installed
# one by one, and as a last resort a blocked twin fetched from the pool by URL.
sides_ok() { have_pkg wine64 && have_pkg wine64-tools && have_pkg wine32:i386; }
if sides_ok; then
    echo ok > "$status_file"
    exit 0
fi
pin=/etc/apt/preferences.d/tarn-wine32-temporary
remove_pin() { $SUDO rm -f "$pin"; }
trap remove_pin EXIT
WINE_BOTH="wine64 wine64-tools libwine wine32:i386 libwine:i386"
reason=""
if ! dpkg --print-foreign-architectures | grep -qx i386; then
    $SUDO dpkg --add-architecture i386 || reason="dpkg --add-architecture i386 failed"
    updated=0
fi
try_install() { # the packages to install together; sets $out and returns apt's status
    out=$($SUDO apt-get install -y -q --no-install-recommends "$@" 2>&1)
}
blocked_of() { echo "$out" | sed -n 's/.*Depends: \([^ ]*\):i386 .*but it is not \(going to be installed\|installable\).*/\1/p' | sort -u; }
if [ -z "$reason" ]; then
    [ $updated = 1 ] || $SUDO apt-get update -q >/dev/null 2>&1 ||
        echo "deps: apt-get update reported errors (an i386 index may be stale), going on" >&2
    try_install $WINE_BOTH
    if [ $? != 0 ]; then
        echo "deps: wine32 did not install as it stands; lowering the security suite for this install" >&2
        printf 'Package: *\nPin: release l=Debian-Security\nPin-Priority: 100\n' | $SUDO tee "$pin" >/dev/null
        extra=()
        for attempt in 1 2 3 4 5 6; do
            try_install "${extra[@]}" $WINE_BOTH && break
            blocked=$(blocked_of)
            [ -n "$blocked" ] || break
            progress=0
            for pkg in $blocked; do
                # apt often resolves a blocked library on its own that it would not inside the
                # whole request.
                if $SUDO apt-get install -y -q --no-install-recommends "$pkg:i386" >/dev/null 2>&1; then
                    progress=1
                    continue
                fi
                ver=$(dpkg-query -W -f='${Version}' "$pkg:amd64" 2>/dev/null || dpkg-query -W -f='${Version}' "$pkg" 2>/dev/null)
                [ -n "$ver" ] || continue
                fn=$(apt-cache show "$pkg:amd64=$ver" 2>/dev/null | sed -n 's/^Filename: //p' | head -1)
                [ -n "$fn" ] || continue
                deb="$here/build/debs32/$(basename "${fn%_amd64.deb}_i386.deb")"
                mkdir -p "$here/build/debs32"
                if [ ! -s "$deb" ]; then
                    for base in http://deb.debian.org/debian-security http://deb.debian.org/debian; do
                        curl -fsSL -o "$deb" "$base/${fn%_amd64.deb}_i386.deb" && break
                        rm -f "$deb"
                    done
                fi
                if [ -s "$deb" ]; then extra+=("$deb"); progress=1; fi
            done
            [ $progress = 1 ] || break
        done
        remove_pin
    fi
    reason=$(echo "$out" | grep -E '^(E:| [^ ].*Depends:)' | head -3 | tr '\n' ' ')
fi
# Whatever happened above, the 64-bit side must still be whole.
for p in wine64 wine64-tools; do
    have_pkg "$p" || $SUDO apt-get install -y -q --no-install-recommends "$p" >/dev/null 2>&1 ||
        echo "deps: $p is missing and did not install again" >&2
done
if sides_ok; then
    echo ok > "$status_file"
else
    echo "${reason:-wine32:i386 could not be installed}" > "$status_file"
    echo "deps: wine32:i386 not installed: $(cat "$status_file")" >&2
fi
exit 0
