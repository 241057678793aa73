#!/usr/bin/env bash
# Runs 200 fields and a picture in slices in one process, then under GNU parallel, over ssh and under
# Slurm, and loses workers, engines and machines on the way: every result has to be there and equal to
# the one process's to the byte. Prints a line for each fault, and what a part costs in each engine.
#
# scripts/test-farm.sh [PIECE...]: of folder, parallel, ssh and slurm; all unless given.
#
# Needs root, and takes some five minutes on two cores. Everything is private to a temporary folder:
# keys, ports, daemons, configurations; no service of the system is started or changed, and nothing
# is left behind but the packages.

source "$(dirname "$0")/setup.sh"

((EUID == 0)) || Fail "Needs root: for the daemons of ssh and Slurm, and a small file system."
PATH=$PATH:/usr/sbin:/sbin
source tests/batches/support.sh

# Debian starts the services that it installs, unless this file forbids it.
policy=/usr/sbin/policy-rc.d
if [[ ! -e $policy ]]; then
    leftovers+=("$policy")
    printf '#!/bin/sh\nexit 101\n' >"$policy"
    chmod +x "$policy"
fi
SetUp "${buildPackages[@]}" parallel slurm-wlm munge openssh-server openssh-client procps
Build release _Orvane >/dev/null

MakeJobs
Reference
if (($# == 0)); then
    set -- folder parallel ssh slurm
fi
for each; do
    source "tests/batches/$each.sh"
done
source bench/batches/workers.sh
Report
