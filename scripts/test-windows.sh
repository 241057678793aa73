#!/usr/bin/env bash
# Cross-builds for 64-bit Windows what needs no Python, runs the native tests under Wine and prints
# how far the golden vectors are from those of this system. Where PYTHON27_WIN names the folder of a
# Windows CPython 2.7, the module is built too.

source "$(dirname "$0")/setup.sh"

InstallPackages cmake ninja-build g++-mingw-w64-x86-64-posix googletest wine wine64

# A Wine of its own: no window, no sound, no installers, nothing of the user's.
export WINEPREFIX=$PWD/build/windows/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
unset DISPLAY
mkdir -p "$WINEPREFIX"

Build windows
# One at a time: two programs that start Wine's server at once can trip over each other.
ctest --preset windows --parallel 1

echo
echo "Golden vectors under Wine:"
wine build/windows/bin/golden_check.exe tests/golden/vectors.txt
