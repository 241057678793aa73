# Sourced by scripts/test-farm.sh: a temporary folder, workers, ends of processes, comparisons.

temp=$(mktemp -d /tmp/orvane-farm-XXXXXX)
mkdir "$temp/workers"
work=$temp/work
parts=20
started=()   # daemons and engines, by id
leftovers=() # what else this script has made
mounted=()
failures=0
overheads=()

# Descendants PID...: their ids, and those of all that they have started.
Descendants() {
    local pid
    for pid; do
        echo "$pid"
        # shellcheck disable=SC2046
        Descendants $(pgrep -P "$pid" || true)
    done
}

# End PID...: these processes and all that they have started, at once.
End() {
    # shellcheck disable=SC2046
    kill -KILL $(Descendants "$@") 2>/dev/null || true
    wait "$@" 2>/dev/null || true
}

# Workers [NODE]: the ids of those at work, on that node of Slurm.
Workers() {
    local file pid
    for file in "$temp"/workers/*; do
        pid=${file##*/}
        if grep -qs "$temp" "/proc/$pid/cmdline" && [[ $(<"$file") == "${1:-$(<"$file")}" ]]; then
            echo "$pid"
        fi
    done
}

# StepAbove PID: the batch script and the slurmstepd above a worker, if it has one.
StepAbove() {
    local script step
    script=$(ps -o ppid= -p "$1" | tr -d ' ')
    step=$(ps -o ppid= -p "${script:-1}" | tr -d ' ')
    if [[ $(ps -o comm= -p "${step:-1}") == slurmstepd ]]; then
        echo "$script $step"
    fi
}

CleanUp() {
    set +e
    local pid path
    for pid in $(Workers); do
        # shellcheck disable=SC2046
        kill -KILL $(StepAbove "$pid") "$pid" 2>/dev/null
    done
    for pid in "${started[@]}"; do
        End "$pid"
    done
    wait 2>/dev/null
    for path in "${mounted[@]}"; do
        umount "$path"
    done
    rm -rf "$temp" "${leftovers[@]}"
}
trap CleanUp EXIT
trap 'exit 130' INT TERM

Now() {
    echo "${EPOCHREALTIME/[.,]/}" # microseconds
}

# Begin WORDS: the fault, or what else is tried from now on.
Begin() {
    fault=$1
    start=$(Now)
}

# Start COMMAND...: in the background; sets `child` to its id.
Start() {
    "$@" &
    child=$!
    started+=("$child")
}

# WaitFor SECONDS COMMAND...: until it succeeds.
WaitFor() {
    local rounds=$(($1 * 10))
    shift
    until "$@" >/dev/null 2>&1; do
        ((rounds-- > 0)) || return 1
        sleep 0.1
    done
}

# FreePort: one that nobody listens on.
FreePort() {
    "$PYTHON2" -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

# HoldWorker [NODE]: stops a worker at work, there, so that it does not end by itself before it is
# lost; sets `held` to its id.
HoldWorker() {
    held=$(Workers "$@" | head -n 1)
    [[ -n $held ]] && kill -STOP "$held" && grep -qs "$temp" "/proc/$held/cmdline"
}

# LoseWorker [NODE]: ends a worker at work, there.
LoseWorker() {
    HoldWorker "$@" && kill -KILL "$held"
}

# Lose FOLDER COMMAND...: once there are some results, what the command ends.
Lose() {
    WaitFor 120 HasResults "$1" 60 && WaitFor 20 "${@:2}" || Wrong "nothing was lost"
}

# HasResults FOLDER COUNT: whether there are as many.
HasResults() {
    (($(find "$1" -name '*.json' -o -name 'slice*.png' 2>/dev/null | wc -l) >= $2))
}

MakeJobs() {
    export PYTHONPATH=$PWD/build/release/lib PYTHONDONTWRITEBYTECODE=1
    "$PYTHON2" tests/batches/make_jobs.py "$temp"
    # work FOLDER K/N [OPTION...]; its id is that of the worker.
    cat >"$temp/work" <<END
#!/usr/bin/env bash
export PYTHONDONTWRITEBYTECODE=1
echo "\${SLURMD_NODENAME:-}" >"$temp/workers/\$\$"
folder=\$1 part=\$2
shift 2
exec "$PYTHON2" -m orvanekit batch "$temp/jobs.jsonl" --out "\$folder" --part "\$part" "\$@"
END
    chmod +x "$temp/work"
}

# GNU parallel asks for a citation on its first run, unless this file is there.
export PARALLEL_HOME=$temp/parallel TMPDIR=$temp
mkdir "$PARALLEL_HOME"
touch "$PARALLEL_HOME/will-cite"

# Parallel FOLDER OPTION...: all the parts.
Parallel() {
    local folder=$1
    shift
    parallel "$@" "$work" "$folder" "{}/$parts" ::: $(seq "$parts") >/dev/null 2>"$temp/words"
}

# Batch FOLDER [ARGUMENT...]: all the jobs in one worker, and what it says.
Batch() {
    "$temp/work" "$1" 1/1 "${@:2}"
}

Join() {
    "$PYTHON2" -m orvanekit join "$@"
}

# Say WORDS: of what has begun, with the seconds since.
Say() {
    printf '%-62s %6.1f s  %s\n' "$fault" "$(($(Now) - start))e-6" "$1"
}

Wrong() {
    Say "FAILED: $1"
    failures=$((failures + 1))
}

# Same FOLDER: whether every result is there and has the bytes of the one process.
Same() {
    if ! Join "$1" "$temp/joined.tar" 2>"$temp/words"; then
        Wrong "$(head -n 3 "$temp/words")"
    elif ! cmp -s "$temp/joined.tar" "$temp/reference.tar"; then
        Wrong "the bytes differ"
    else
        Say "$count results, $bytes bytes: all equal"
    fi
    rm -f "$temp/joined.tar"
}

# Reference: the results of one process, and the picture out of its slices.
Reference() {
    Begin "one process"
    Batch "$temp/reference" >"$temp/words" || Fail "$(<"$temp/words")"
    Join "$temp/reference" "$temp/reference.tar"
    count=$(wc -l <"$temp/jobs.jsonl")
    bytes=$(cat "$temp"/reference/{field,slice}* | wc -c)
    Say "$(<"$temp/words")"

    Begin "slices joined into a picture"
    mkdir "$temp/picture"
    cp "$temp"/reference/slice* "$temp/picture"
    grep slice "$temp/jobs.jsonl" >"$temp/slices.jsonl"
    "$PYTHON2" -m orvanekit batch "$temp/slices.jsonl" --out "$temp/picture" >"$temp/words"
    Join "$temp/picture" "$temp/joined.png"
    "$PYTHON2" -m orvanekit render "$temp/globe.json" "$temp/whole.png" --width 1024
    if cmp -s "$temp/joined.png" "$temp/whole.png" && grep -q '^0 made, 16 ' "$temp/words"; then
        Say "equal to the picture drawn at once"
    else
        Wrong "another picture, or slices made again"
    fi
}

# Overhead: what each of the parts has cost that did nothing, not even start Python.
Overhead() {
    local each=$((($(Now) - start) / parts))
    overheads+=("$(printf '%-62s %6.2f ms' "a part under $fault" "${each}e-3")")
}

Report() {
    echo
    echo "Overhead, $(nproc) cores:"
    printf '%s\n' "${overheads[@]}"
    ((failures == 0)) || Fail "$failures failed"
}
