# Sourced by scripts/test-farm.sh: what may happen to a folder of results, without an engine.

# Remade FOLDER WORDS: works again in the folder; says whether it made what it had to.
Remade() {
    local made
    made=$(Batch "$1" 2>"$temp/words") || true
    if [[ $made == "$2"* ]]; then
        Same "$1"
    else
        Wrong "$made instead of $2: $(head -n 1 "$temp/words")"
    fi
}

Begin "two workers on the same part at once"
Start "$temp/work" "$temp/twice" 1/1 >/dev/null
first=$child
Start "$temp/work" "$temp/twice" 1/1 >/dev/null
wait "$first" "$child" || true
Same "$temp/twice"

Begin "a worker killed"
Start "$temp/work" "$temp/killed" 1/1 >/dev/null
WaitFor 60 HasResults "$temp/killed" 50 || Fail "no results after a minute"
kill -KILL "$child"
wait "$child" 2>/dev/null || true
Join "$temp/killed" "$temp/joined.tar" 2>"$temp/words" && Wrong "join of half a batch not refused"
missing=$(grep -c ': missing$' "$temp/words" || true)
fault+=", $missing results named as missing"
Remade "$temp/killed" "$missing made"

Begin "a full disk"
mkdir "$temp/small"
if mount -t tmpfs -o size=1m none "$temp/small" 2>"$temp/words"; then
    mounted+=("$temp/small")
    made=$(Batch "$temp/small/out" 2>"$temp/words") && Wrong "status 0"
    mount -o remount,size=64m "$temp/small"
    fault+=" ($(grep -c 'Error: .*No space left' "$temp/words" || true) refusals), then room"
else
    # Files of 8 KB at most: a set does not fit.
    made=$(ulimit -f 8 && Batch "$temp/small/out" 2>"$temp/words") && Wrong "status 0"
    fault="no mount here: files limited to 8 KB, then not"
fi
made=${made##*already, }
Remade "$temp/small/out" "${made% failed} made"
if compgen -G "$temp/small/out/*.error" >/dev/null; then
    Wrong "error files are left"
fi

Begin "a machine whose C library rounds differently"
tunables=glibc.cpu.hwcaps=-AVX2,-FMA,-FMA4
if [[ $(GLIBC_TUNABLES=$tunables "$PYTHON2" -c 'import math; print(sum(
        math.sin(i * 0.001) != float(v) for i, v in enumerate(open("/dev/stdin"))))' \
    < <("$PYTHON2" -c 'import math
for i in range(20000): print(repr(math.sin(i * 0.001)))')) == 0 ]]; then
    Say "skipped: GLIBC_TUNABLES changes no result on this processor"
elif GLIBC_TUNABLES=$tunables Batch "$temp/killed" >/dev/null 2>"$temp/words" ||
    ! grep -q 'begun under the fingerprint' "$temp/words"; then
    Wrong "not refused: $(<"$temp/words")"
else
    Say "refused"
fi
