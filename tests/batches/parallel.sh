# Sourced by scripts/test-farm.sh: GNU parallel on this machine.

Begin "parallel, two workers, $parts parts"
Parallel "$temp/parallel-2" -j 2
Same "$temp/parallel-2"
Begin "GNU parallel"
work=true Parallel "$temp/parallel-2" -j 2
Overhead

Begin "parallel, a worker killed, --retries 3"
Start Parallel "$temp/parallel-kill" -j 2 --retries 3 --joblog "$temp/kill.log"
Lose "$temp/parallel-kill" LoseWorker
wait "$child" || Wrong "parallel failed: $(<"$temp/words")"
Same "$temp/parallel-kill"

Begin "parallel killed with its workers, --joblog, --resume-failed"
Start Parallel "$temp/parallel-resume" -j 2 --joblog "$temp/resume.log"
Lose "$temp/parallel-resume" End "$child"
before=$(tail -n +2 "$temp/resume.log" | wc -l)
((before < parts)) || Wrong "parallel had done all"
Parallel "$temp/parallel-resume" -j 2 --joblog "$temp/resume.log" --resume-failed
fault+=", $before parts logged"
Same "$temp/parallel-resume"
