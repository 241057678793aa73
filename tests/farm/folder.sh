# Sourced by scripts/test-farm.sh: what may happen to a folder of results, without an engine.

# Remade FAULT START FOLDER WORDS: works again in the folder; says whether it made what it had to.
Remade() {
    local made
    made=$(Batch "$3" 2>"$temp/words") || true
    if [[ $made == "$4"* ]]; then
        Same "$@"
    else
        Wrong "$1" "$2" "$made instead of $4: $(head -n 1 "$temp/words")"
    fi
}

start=$(Now)
"$temp/work" "$temp/twice" 1/1 >/dev/null &
first=$!
"$temp/work" "$temp/twice" 1/1 >/dev/null &
started+=("$first" "$!")
wait "$first" "$!" || true
Same "two workers on the same part at once" "$start" "$temp/twice"

start=$(Now)
"$temp/work" "$temp/killed" 1/1 >/dev/null &
started+=("$!")
WaitFor 60 HasResults "$temp/killed" 50 || Fail "no results after a minute"
kill -KILL "$!"
wait "$!" 2>/dev/null || true
Join "$temp/killed" "$temp/joined.tar" 2>"$temp/words" && Wrong "join of half a batch" "$start" "not refused"
missing=$(grep -c ': missing$' "$temp/words" || true)
Remade "a worker killed, $missing results named as missing" "$start" "$temp/killed" "$missing made"

start=$(Now)
truncate -s 1000 "$temp/killed/field-007.json"
truncate -s 0 "$temp/killed/slice-03.png"
sed -i '20s/[1-9]/0/3' "$temp/killed/field-008.json"
Join "$temp/killed" "$temp/joined.tar" 2>"$temp/words" && Wrong "join of damaged results" "$start" "not refused"
damaged=$(grep -c ': damaged' "$temp/words" || true)
Remade "3 results truncated or altered by hand, $damaged named" "$start" "$temp/killed" "3 made"

start=$(Now)
cp "$temp/jobs.jsonl" "$temp/kept.jsonl"
sed -i '5s/"seed": 7/"seed": 8/' "$temp/jobs.jsonl"
changed=$(Batch "$temp/killed")
Join "$temp/killed" "$temp/joined.tar"
cmp -s "$temp/joined.tar" "$temp/reference.tar" && changed="nothing"
mv "$temp/kept.jsonl" "$temp/jobs.jsonl"
Remade "a job changed and changed back, 1 made each time" "$start" "$temp/killed" "${changed%, * already*}"

start=$(Now)
mkdir "$temp/small"
if mount -t tmpfs -o size=1m none "$temp/small" 2>"$temp/words"; then
    mounted+=("$temp/small")
    made=$(Batch "$temp/small/out" 2>"$temp/words") && Wrong "a full disk" "$start" "status 0"
    mount -o remount,size=64m "$temp/small"
    errors=$(grep -c 'Error: .*No space left' "$temp/words" || true)
    how="a full disk ($errors refusals), then room"
else
    # Files of 8 KB at most: a set does not fit.
    made=$(ulimit -f 8 && Batch "$temp/small/out" 2>"$temp/words") && Wrong "a full disk" "$start" "status 0"
    how="no mount here: files limited to 8 KB, then not"
fi
made=${made##*already, }
Remade "$how" "$start" "$temp/small/out" "${made% failed} made"
if compgen -G "$temp/small/out/*.error" >/dev/null; then
    Wrong "$how" "$start" "error files are left"
fi

start=$(Now)
tunables=glibc.cpu.hwcaps=-AVX2,-FMA,-FMA4
fault="a machine whose C library rounds differently"
if [[ $(GLIBC_TUNABLES=$tunables "$PYTHON2" -c 'import math; print(sum(
        math.sin(i * 0.001) != float(v) for i, v in enumerate(open("/dev/stdin"))))' \
    < <("$PYTHON2" -c 'import math
for i in range(20000): print(repr(math.sin(i * 0.001)))')) == 0 ]]; then
    Say "$fault" - "skipped: GLIBC_TUNABLES changes no result on this processor"
elif GLIBC_TUNABLES=$tunables Batch "$temp/killed" >/dev/null 2>"$temp/words" ||
    ! grep -q 'begun under the fingerprint' "$temp/words"; then
    Wrong "$fault" "$start" "not refused: $(<"$temp/words")"
else
    Say "$fault" "$(Since "$start")" "refused"
fi

# What a worker and a job cost beyond their work, by jobs as small as can be.
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
