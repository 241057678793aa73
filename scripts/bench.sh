#!/usr/bin/env bash
# Measures every job against the literal model, the binding against minimal C functions and the
# functions of orvanekit, and prints the tables as Markdown. Arguments go to the benchmark program:
# --benchmark_filter=REGEX chooses jobs, --runs=N how often each is measured anew (5 where nothing is
# said).

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" libbenchmark-dev
Build bench orvane_bench minimal _Orvane >&2

build/bench/bin/orvane_bench --runs=5 "$@"
echo
"$PYTHON2" bench/binding/measure.py build/bench/lib
echo
PYTHONDONTWRITEBYTECODE=1 "$PYTHON2" bench/kit/measure.py build/bench/lib
