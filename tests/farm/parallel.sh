# Sourced by scripts/test-farm.sh: GNU parallel on this machine.

start=$(Now)
Parallel "$temp/parallel-2" -j 2
Same "parallel, two workers, $parts parts" "$start" "$temp/parallel-2"
start=$(Now)
work=true Parallel "$temp/parallel-2" -j 2
Overhead "GNU parallel" "$start"

start=$(Now)
fault="parallel, a worker killed, --retries 3"
Parallel "$temp/parallel-kill" -j 2 --retries 3 --joblog "$temp/kill.log" &
engine=$!
started+=("$engine")
WaitFor 60 HasResults "$temp/parallel-kill" 60 && WaitFor 5 LoseWorker ||
    Wrong "$fault" "$start" "no worker was killed"
wait "$engine" || Wrong "$fault" "$start" "parallel failed: $(<"$temp/words")"
Same "$fault" "$start" "$temp/parallel-kill"

start=$(Now)
fault="parallel killed with its workers, --joblog, --resume-failed"
Parallel "$temp/parallel-resume" -j 2 --joblog "$temp/resume.log" &
engine=$!
started+=("$engine")
WaitFor 60 HasResults "$temp/parallel-resume" 60 || Wrong "$fault" "$start" "no results"
End "$engine"
before=$(tail -n +2 "$temp/resume.log" | wc -l)
((before < parts)) || Wrong "$fault" "$start" "parallel had done all"
Parallel "$temp/parallel-resume" -j 2 --joblog "$temp/resume.log" --resume-failed
Same "$fault, $before parts logged" "$start" "$temp/parallel-resume"
