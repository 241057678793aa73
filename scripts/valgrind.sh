#!/usr/bin/env bash
# Runs the native tests under valgrind's memcheck; fails where it reports an error or a leak. Takes
# minutes. Valgrind has no AVX-512: the kernels for it are left out. Arguments go to the tests:
# --gtest_filter=PATTERN chooses some.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" valgrind
Build release native_tests

exec valgrind --error-exitcode=1 --leak-check=full \
    --errors-for-leak-kinds=definite,indirect,possible build/release/bin/native_tests "$@"
