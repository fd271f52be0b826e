#!/usr/bin/env bash
# Builds everything and runs every test: the pure code natively under the sanitizers, then the
# DLL for x64 and x86 with all their tests under Wine. Installs what is missing first; safe to
# run again. Exit status 0 only when every test that could run passed.
set -uo pipefail
tarn_root=$(cd "$(dirname "$0")/.." && pwd)
cd "$tarn_root"
start=$(date +%s)
stamp() { echo "[$(( $(date +%s) - start ))s] $*"; }
jobs=$(nproc 2>/dev/null || echo 2)

scripts/deps.sh || { echo "test: installing the dependencies failed"; exit 1; }
stamp "dependencies ready"

failed=0
run() { "$@" || { echo "test: FAILED: $*"; failed=1; }; }

# ---- native: the pure code with AddressSanitizer and UndefinedBehaviorSanitizer
run cmake --preset native >/dev/null
run cmake --build --preset native -j "$jobs"
run ctest --preset native -j "$jobs"
stamp "native done"

# ---- Windows builds: both always build (x86 needs only the cross compiler)
run cmake --preset x64 >/dev/null
run cmake --build --preset x64 -j "$jobs"
run cmake --preset x86 >/dev/null
run cmake --build --preset x86 -j "$jobs"
stamp "Windows builds done"

# ---- Windows tests under Wine, in one Wine session for the whole run (see wine-env.sh)
. scripts/wine-env.sh
unset DISPLAY
tarn_wine_session_start
trap tarn_wine_session_stop EXIT
stamp "Wine ready"

run ctest --preset x64 -j "$jobs"
stamp "x64 tests done"
x86_status=$(cat build/x86-status 2>/dev/null || echo "the dependency step did not run")
if [ "$x86_status" = ok ]; then
    run ctest --preset x86 -j "$jobs"
    stamp "x86 tests done"
else
    echo "x86 tests SKIPPED: $x86_status"
fi

if [ $failed = 0 ]; then stamp "all tests passed"; else stamp "SOME TESTS FAILED"; fi
exit $failed
