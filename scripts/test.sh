#!/usr/bin/env bash
# Everything that has to hold before a change goes in: the static checks, the whole suite twice, as
# released and with the address and undefined-behaviour sanitizers, and a short run of the fuzzers.
# Passes if all of it does.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" "${checkPackages[@]}" "${fuzzPackages[@]}"

scripts/check-format.sh
Build release
cmake --build --preset release --target static_checks
ctest --preset release
Build asan
ctest --preset asan
Build fuzz
ctest --preset fuzz
