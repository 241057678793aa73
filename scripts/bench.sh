#!/usr/bin/env bash
# Measures every job against the literal model, the binding against minimal C functions and the
# functions of orvanekit, and prints the tables as Markdown. Arguments go to the benchmark program:
# --benchmark_filter=REGEX chooses jobs, --runs=N how often each is measured anew (5 where nothing is
# said). Without arguments the tables go to a file in bench/results too, named after the processor and
# the day.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}" libbenchmark-dev
Build bench orvane_bench minimal _Orvane >&2

Measure() {
    build/bench/bin/orvane_bench --runs=5 "$@"
    echo
    "$PYTHON2" bench/binding/measure.py build/bench/lib
    echo
    PYTHONDONTWRITEBYTECODE=1 "$PYTHON2" bench/kit/measure.py build/bench/lib
}

if (($# > 0)); then
    Measure "$@"
    exit
fi
mkdir -p bench/results
commit=$(git describe --always --dirty)
printed=$(mktemp bench/results/.measured.XXXXXX)
trap 'rm -f "$printed"' EXIT
Measure | tee "$printed"
machine=$(sed -n 's/^Processor: \(.*\), widest instruction set in use: \([^.]*\)\. .*/\1, \2/p' "$printed")
file=bench/results/$(tr -cs '[:alnum:]-' '-' <<<"${machine,,}" | sed 's/-$//')-$(date +%F).md
{
    printf '# %s\n\n%s, commit %s.\n\n' "$machine" "$(date '+%-d %B %Y')" "$commit"
    cat "$printed"
} >"$file"
echo "written to $file" >&2
