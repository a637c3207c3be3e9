#!/bin/bash
# hosts_test.sh PROJECT CONVERTER EI4MAKE COUNT: an archive over three hosts by ssh. As root. The hosts are network
# namespaces with an sshd each, whose keys and settings lie in a scratch folder; the file system they share is this
# machine's. A worker is killed on one, another is cut off in the middle of an image and wakes up after the image was
# converted elsewhere.
project=$1 converter=$2 ei4make=$3
. "$project/tests/batch/support.sh"
batch=$project/contrib/ei4-batch
[[ $(id -u) == 0 ]] || fail "only root can make network namespaces"
make_archive "$4"
make_stalling_converter
plain_run
said "$4 images"

ssh-keygen -q -t ed25519 -N '' -f "$scratch/key"
[[ -d /run/sshd ]] || { mkdir -m 755 /run/sshd; at_end rmdir /run/sshd; }
cat >"$scratch/ssh_config" <<CONFIG
Host host*
  User root
  IdentityFile $scratch/key
  IdentitiesOnly yes
  UserKnownHostsFile $scratch/known_hosts
  StrictHostKeyChecking yes
  ServerAliveInterval 2
  ServerAliveCountMax 2
CONFIG

# What the hosts find by name: everything but GNU parallel, which only this end needs.
mkdir "$scratch/bin"
ln -s /usr/bin/* "$scratch/bin/"
rm "$scratch"/bin/*parallel*

# start_host N: the namespace ei4-$$-N with an sshd at 10.213.N.2.
start_host() {
  local space=ei4-$$-$1 link=e4v$1 folder=$scratch/host$1
  mkdir "$folder"
  ip netns add "$space"
  at_end "ip netns pids $space | xargs -r kill -KILL; ip netns del $space"
  ip link add "$link" type veth peer name eth0 netns "$space"
  ip addr add "10.213.$1.1/30" dev "$link"
  ip link set "$link" up
  ip -n "$space" addr add "10.213.$1.2/30" dev eth0
  ip -n "$space" link set eth0 up
  ip -n "$space" link set lo up
  ssh-keygen -q -t ed25519 -N '' -f "$folder/host_key"
  cat >"$folder/sshd_config" <<CONFIG
ListenAddress 10.213.$1.2
HostKey $folder/host_key
AuthorizedKeysFile $scratch/key.pub
PidFile none
PermitRootLogin prohibit-password
StrictModes no
SetEnv PATH=$scratch/bin
UsePAM yes
CONFIG
  ip netns exec "$space" /usr/sbin/sshd -D -e -f "$folder/sshd_config" 2>"$folder/log" &
  started+=($!)
  printf 'host%d %s\n' "$1" "$(cut -d ' ' -f 1,2 "$folder/host_key.pub")" >>"$scratch/known_hosts"
  printf 'Host host%d\n  HostName 10.213.%d.2\n  HostKeyAlias host%d\n' "$1" "$1" "$1" >>"$scratch/ssh_config"
  wait_for 10 ssh -F "$scratch/ssh_config" "host$1" true 2>>"$scratch/ssh.log"
  ! ssh -F "$scratch/ssh_config" "host$1" command -v parallel || fail "host$1 finds GNU parallel"
}
for host in 1 2 3; do start_host $host; done
said "three hosts answer"

outputs=$scratch/thumbnails
job=$scratch/job
"$batch" new "$job" --from "$archive" --out "$outputs" --list "$scratch/list" --part-size 20 --converter "$stalling" \
  -- -geom 128x128 -jpgquality 90
printf '2/host%d\n' 1 2 3 >"$scratch/hosts"
export PARALLEL_SSH="ssh -F $scratch/ssh_config"
setsid "$batch" run "$job" --hosts "$scratch/hosts" >"$scratch/first.txt" 2>&1 &
run=$!
started+=("$run")
at_end "kill -KILL -- -$run 2>/dev/null"  # what it started

stalled_image 'stall 33.ei4'
said "the first image stands on $(host_of "${worker[1]}")"
kill -KILL "${worker[@]}"
stalled_image 'stall 66.ei4'
host=$(host_of "${worker[1]}")
ip -n "ei4-$$-${host#host}" link set eth0 down
said "cut off $host in the middle of another image"

# Its part goes to another host, and the run ends; only then it wakes up, with the image under its hands.
status=0
wait "$run" || status=$?
said "the run ended"
kill -0 "${worker[1]}" || fail "the worker of $host ended before it woke up"
: >"$scratch/stalled/stall 66.ei4.go"
for process in "${worker[@]}"; do wait_for 60 gone "$process"; done
said "the worker of $host finished late"
# The other worker of the lost host may have been at its part for a while.
check_outcome "$status" 22
hosts=$(awk 'NR > 1 { print $2 }' "$job/joblog" | sort -u | wc -l)
((hosts >= 2)) || fail "only $hosts host worked"
[[ -z $(find "$outputs" -name '.ei4-batch.*') ]] || fail "something half written is left"
