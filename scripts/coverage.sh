#!/usr/bin/env bash
# Prints which share of the lines of orvane/ and tesk/ the test suite runs, and which lines it does
# not; fails below 95 percent.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" gcovr
Build coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage
gcovr --filter orvane/ --filter tesk/ --sort-percentage --fail-under-line 95 \
    build/coverage/orvane build/coverage/tesk
