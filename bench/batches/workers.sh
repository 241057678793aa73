# Sourced by scripts/test-farm.sh: what a worker and a job cost beyond their work, by jobs as small as
# can be.

for number in {1..500}; do
    echo "{\"id\": \"$number\", \"do\": \"gaussians\", \"seed\": 1, \"samples\": 1, \"bands\": 1, \"given\": [[0, 0, 1, 1]]}"
done >"$temp/tiny.jsonl"
# Timed WORDS JOBS FOLDER [OPTION...]: the least of five times in milliseconds, for each of the jobs.
Timed() {
    local start round times=()
    for round in 1 2 3 4 5; do
        start=$(Now)
        "$PYTHON2" -m orvanekit batch "$temp/tiny.jsonl" --out "${3//ROUND/$round}" "${@:4}" >/dev/null
        times+=($(($(Now) - start)))
    done
    overheads+=("$(printf '%s\n' "${times[@]}" | sort -n | awk -v words="$1" -v jobs="$2" '
        NR == 1 { printf "%-62s %6.2f ms", words, $1 / 1e3 / jobs }')")
}
Timed "a worker's start, with one job" 1 "$temp/tiny-1-ROUND" --part 1/500
Timed "a job beyond its work: checked, written, flushed, renamed" 500 "$temp/tiny-ROUND"
Timed "a job whose result is there" 500 "$temp/tiny-1"
