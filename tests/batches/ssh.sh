# Sourced by scripts/test-farm.sh: two machines reached by ssh, which are two
# daemons on ports of their own.

if [[ ! -d /run/sshd ]]; then # without it sshd does not start
    mkdir -m 755 /run/sshd
    leftovers+=(/run/sshd)
fi
mkdir -m 700 "$temp/ssh"
ssh-keygen -q -t ed25519 -N '' -f "$temp/ssh/host"
ssh-keygen -q -t ed25519 -N '' -f "$temp/ssh/user"
sed "s/^/machine /" <(cut -d ' ' -f 1,2 "$temp/ssh/host.pub") >"$temp/ssh/known"

# StartMachine NAME: its daemon, and how to reach it.
StartMachine() {
    local port
    port=$(FreePort)
    cat >"$temp/ssh/$1.conf" <<END
Port $port
ListenAddress 127.0.0.1
HostKey $temp/ssh/host
AuthorizedKeysFile $temp/ssh/user.pub
PidFile none
UsePAM no
StrictModes no
PermitRootLogin prohibit-password
PasswordAuthentication no
MaxStartups 100
MaxSessions 100
END
    Start "$(command -v sshd)" -D -e -f "$temp/ssh/$1.conf" 2>>"$temp/ssh/$1.log"
    machine=$child
    cat >>"$temp/ssh/config" <<END
Host $1
    HostName 127.0.0.1
    Port $port
    User root
    IdentityFile $temp/ssh/user
    IdentitiesOnly yes
    HostKeyAlias machine
    UserKnownHostsFile $temp/ssh/known
    GlobalKnownHostsFile none
    BatchMode yes
    ConnectTimeout 5
END
    echo "1/ssh -F $temp/ssh/config $1" >>"$temp/ssh/machines"
    WaitFor 10 ssh -F "$temp/ssh/config" "$1" true || Fail "no ssh to $1: $(<"$temp/ssh/$1.log")"
}

StartMachine one
StartMachine two
overSsh=(--sshloginfile "$temp/ssh/machines" --retries 5 --workdir . --env PYTHONPATH)

Begin "parallel over ssh, two machines"
Parallel "$temp/ssh-2" "${overSsh[@]}"
Same "$temp/ssh-2"
Begin "GNU parallel over ssh"
work=true Parallel "$temp/ssh-2" "${overSsh[@]}"
Overhead

# LoseMachine: ends the daemon, its sessions and the worker at work there.
LoseMachine() {
    local worker
    worker=$(comm -12 <(Descendants "$machine" | sort) <(Workers | sort))
    [[ -n $worker ]] && kill -STOP "$worker" && End "$machine"
}

Begin "parallel over ssh, one of two machines lost, --retries 5"
Start Parallel "$temp/ssh-lost" "${overSsh[@]}"
Lose "$temp/ssh-lost" LoseMachine
wait "$child" || Wrong "parallel failed: $(<"$temp/words")"
Same "$temp/ssh-lost"
