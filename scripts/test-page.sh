#!/usr/bin/env bash
# Opens pages that orvanekit writes in Debian's Chromium, without a screen and without a network: what
# they draw, say, save and refuse. Leaves screenshots in build/page, to be looked at, and prints how
# fast a page draws. Takes two minutes, and 400 MB on the disk where Chromium is missing.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" chromium chromium-driver
Build release _Orvane

mkdir -p build/page
export PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1 SCREENSHOTS=$PWD/build/page
"$PYTHON2" tests/page/test_in_browser.py "$@"
echo "Please look at the screenshots: $SCREENSHOTS"
echo
"$PYTHON2" bench/page/measure.py build/release/lib
