#!/usr/bin/env bash
# Runs both fuzzers side by side from the committed seeds, for 600 seconds unless told otherwise:
#   scripts/fuzz.sh [SECONDS]
# New inputs are collected in build/fuzz/corpus; a finding is left in build/fuzz as a file that the
# fuzzer takes as its argument.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" "${fuzzPackages[@]}"
Build fuzz

export LSAN_OPTIONS=suppressions=$PWD/cmake/leak-suppressions.txt:print_suppressions=0
jobs=()
for fuzzer in fuzz_core fuzz_script; do
    mkdir -p "build/fuzz/corpus/$fuzzer"
    build/fuzz/bin/$fuzzer -max_total_time="${1:-600}" -max_len=512 -timeout=20 \
        -rss_limit_mb=4096 -detect_leaks=0 -artifact_prefix=build/fuzz/ -print_final_stats=1 \
        "build/fuzz/corpus/$fuzzer" "fuzz/seeds/$fuzzer" &>"build/fuzz/$fuzzer.log" &
    jobs+=($!)
done
status=0
for job in "${jobs[@]}"; do
    wait "$job" || status=1
done
for fuzzer in fuzz_core fuzz_script; do
    echo "$fuzzer (all it said: build/fuzz/$fuzzer.log)"
    grep -E '^(stat::|  [A-Z])|ERROR|SUMMARY|finding' "build/fuzz/$fuzzer.log" || true
done
exit $status
