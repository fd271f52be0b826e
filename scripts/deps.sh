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
if have_pkg wine32:i386; then
    echo ok > "$status_file"
    exit 0
fi
reason=""
if ! dpkg --print-foreign-architectures | grep -qx i386; then
    $SUDO dpkg --add-architecture i386 || reason="dpkg --add-architecture i386 failed"
fi
if [ -z "$reason" ]; then
    $SUDO apt-get update -q || echo "deps: apt-get update reported errors (an i386 index may be stale), going on" >&2
    # An i386 library whose amd64 twin came from the security suite must have the very same
    # version (Multi-Arch: same). When the security suite's i386 index could not be read, fetch
    # such twins from its pool by URL and offer them to apt together with wine32.
    extra=()
    for attempt in 1 2 3 4 5 6; do
        out=$($SUDO apt-get install -y -q --no-install-recommends "${extra[@]}" wine32:i386 2>&1)
        rc=$?
        if [ $rc = 0 ]; then reason=""; break; fi
        reason=$(echo "$out" | grep -E '^(E:| [^ ].*Depends:)' | head -3 | tr '\n' ' ')
        blocked=$(echo "$out" | sed -n 's/.*Depends: \([^ ]*\):i386 .*but it is not going to be installed.*/\1/p' | sort -u)
        [ -n "$blocked" ] || break
        progress=0
        for pkg in $blocked; do
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
fi
if have_pkg wine32:i386; then
    echo ok > "$status_file"
else
    echo "${reason:-wine32:i386 could not be installed}" > "$status_file"
    echo "deps: wine32:i386 not installed: $(cat "$status_file")" >&2
fi
exit 0
