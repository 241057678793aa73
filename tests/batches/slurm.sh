# Sourced by scripts/test-farm.sh: a cluster of two nodes, both on this machine, with a
# configuration, a key and ports of its own.

mkdir -m 755 "$temp/slurm"
host=$(hostname -s)
cat >"$temp/slurm/slurm.conf" <<END
ClusterName=farm
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$(FreePort)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
# How long a job that is queued again waits, in seconds.
AuthInfo=socket=$temp/slurm/munge,cred_expire=10
CredType=cred/munge
StateSaveLocation=$temp/slurm/state
SlurmdSpoolDir=$temp/slurm/%n
SlurmctldPidFile=$temp/slurm/ctld.pid
SlurmdPidFile=$temp/slurm/%n.pid
SlurmctldLogFile=$temp/slurm/ctld.log
SlurmdLogFile=$temp/slurm/%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
SelectType=select/cons_tres
SchedulerParameters=batch_sched_delay=0,sched_interval=2,bf_interval=2
SlurmdTimeout=10
ReturnToService=2
RequeueExit=137
NodeName=n1 NodeHostname=$host NodeAddr=127.0.0.1 Port=$(FreePort) CPUs=1
NodeName=n2 NodeHostname=$host NodeAddr=127.0.0.1 Port=$(FreePort) CPUs=1
PartitionName=all Nodes=n1,n2 Default=YES State=UP
END
export SLURM_CONF=$temp/slurm/slurm.conf
mkdir "$temp"/slurm/{state,n1,n2}
head -c 1024 /dev/urandom >"$temp/slurm/key"
chmod 600 "$temp/slurm/key"

# Daemon NAME COMMAND...: starts it.
Daemon() {
    Start "${@:2}" >"$temp/slurm/$1.out" 2>&1
}

# Array FOLDER: all the parts as an array job.
Array() {
    sbatch --quiet --requeue --array="1-$parts" --output=/dev/null <<END
#!/usr/bin/env bash
"$work" "$1" "\$SLURM_ARRAY_TASK_ID/$parts"
exit \$?
END
}

# LoseNode NAME: a worker there, what has started it, and the node's daemon, which is `node`.
LoseNode() {
    HoldWorker "$1" || return 1
    # shellcheck disable=SC2046
    kill -KILL "$node" $(StepAbove "$held") "$held"
    wait "$node" || true
}

# Requeued: how many parts have been started more than once.
Requeued() {
    scontrol show jobs | grep -c 'Restarts=[1-9]' || true
}

# Finish: waits until no part is left.
Finish() {
    WaitFor 240 Ended || Wrong "not ended"
}
Ended() {
    [[ -z $(squeue --noheader) ]]
}
IsUp() {
    [[ $(sinfo --noheader --format %t%D) == idle2 ]]
}

Begin "Slurm, two nodes up"
Daemon munge munged --foreground --force --key-file="$temp/slurm/key" --socket="$temp/slurm/munge" \
    --pid-file="$temp/slurm/munge.pid" --log-file="$temp/slurm/munge.log" \
    --seed-file="$temp/slurm/seed"
WaitFor 10 test -S "$temp/slurm/munge" || Fail "no munge: $(cat "$temp"/slurm/munge.{out,log})"
Daemon ctld slurmctld -D
Daemon n1 slurmd -D -N n1
Daemon n2 slurmd -D -N n2
node=$child
WaitFor 60 IsUp || Fail "no cluster: $(tail -n 3 "$temp"/slurm/*.{out,log})"
Say ""

Begin "Slurm, an array of $parts on two nodes"
Array "$temp/slurm-2"
Finish
Same "$temp/slurm-2"
Begin "Slurm"
work=true Array "$temp/slurm-2"
Finish
Overhead

Begin "Slurm, a worker killed, RequeueExit=137"
Array "$temp/slurm-kill"
Lose "$temp/slurm-kill" LoseWorker n1
Finish
before=$(Requeued)
((before > 0)) || Wrong "no part was queued again"
fault+=" ($before)"
Same "$temp/slurm-kill"

Begin "Slurm, one of two nodes lost, --requeue"
Array "$temp/slurm-lost"
Lose "$temp/slurm-lost" LoseNode n2
Finish
lost=$(($(Requeued) - before))
((lost > 0)) || Wrong "no part was queued again"
fault+=" ($lost)"
Same "$temp/slurm-lost"
