#!/usr/bin/env bash
# Everything that has to hold before a change goes in: the static checks, and the whole suite twice,
# as released and with the address and undefined-behaviour sanitizers. Passes if all of it does.

source "$(dirname "$0")/setup.sh"

InstallPackages "${buildPackages[@]}" "${checkPackages[@]}"
NeedPython2

scripts/check-format.sh
Build release
cmake --build --preset release --target static_checks
ctest --preset release
Build asan
ctest --preset asan
