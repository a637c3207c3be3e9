#!/bin/bash
# slurm_test.sh PROJECT CONVERTER EI4MAKE COUNT: an archive as a Slurm job array. As root. Munge, slurmctld and two
# slurmd are started with settings of their own in a scratch folder. A worker is killed in the middle of an image, and
# later a whole node: its slurmd and all that it runs.
project=$1 converter=$2 ei4make=$3
. "$project/tests/batch/support.sh"
batch=$project/contrib/ei4-batch
[[ $(id -u) == 0 ]] || fail "Slurm's daemons need root here"
export PATH=$PATH:/usr/sbin
make_archive "$4"
make_stalling_converter
plain_run
said "$4 images"

# --- A cluster of two nodes on this machine ---
chmod 755 "$scratch"
mkdir -m 755 "$scratch/munge" "$scratch/slurm"
dd if=/dev/urandom of="$scratch/munge/key" bs=1024 count=1 status=none
chmod 600 "$scratch/munge/key"
munged --foreground --force --socket="$scratch/munge/socket" --key-file="$scratch/munge/key" \
  --pid-file="$scratch/munge/pid" --log-file="$scratch/munge/log" --seed-file="$scratch/munge/seed" \
  2>"$scratch/munge/said" &
started+=($!)
wait_for 10 test -S "$scratch/munge/socket"

host=$(hostname -s)
export SLURM_CONF=$scratch/slurm/slurm.conf
cat >"$SLURM_CONF" <<CONFIG
ClusterName=ei4
SlurmctldHost=$host(127.0.0.1)
SlurmUser=root
SlurmctldPort=27817
AuthType=auth/munge
AuthInfo=socket=$scratch/munge/socket,cred_expire=5
StateSaveLocation=$scratch/slurm/state
SlurmdSpoolDir=$scratch/slurm/%n
SlurmctldPidFile=$scratch/slurm/slurmctld.pid
SlurmdPidFile=$scratch/slurm/%n.pid
SlurmctldLogFile=$scratch/slurm/slurmctld.log
SlurmdLogFile=$scratch/slurm/%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
SchedulerParameters=batch_sched_delay=1,sched_interval=2
SlurmdTimeout=6
ReturnToService=2
MpiDefault=none
NodeName=one NodeHostname=$host NodeAddr=127.0.0.1 Port=27818 CPUs=2
NodeName=two NodeHostname=$host NodeAddr=127.0.0.1 Port=27819 CPUs=2
PartitionName=all Nodes=one,two Default=YES State=UP
CONFIG
mkdir "$scratch/slurm/state" "$scratch/slurm/one" "$scratch/slurm/two"
slurmctld -D -f "$SLURM_CONF" 2>"$scratch/slurm/slurmctld.said" &
started+=($!)
# Each node has its own name and its own namespace of processes: it ends with all that it runs when its first one is
# killed.
declare -A node
for name in one two; do
  unshare --uts --pid --fork --mount-proc --kill-child \
    sh -c 'hostname "$1"; exec slurmd -D -N "$1" -f "$2"' sh "$name" "$SLURM_CONF" 2>"$scratch/slurm/$name.said" &
  node[$name]=$!
  started+=($!)
done
both_idle() { [[ $(sinfo -h -N -o %t | sort -u) == idle ]]; }
wait_for 30 both_idle 2>/dev/null
said "a cluster of two nodes is up: $(sinfo --version)"

# --- The job ---
outputs=$scratch/thumbnails
job=$scratch/job
"$batch" new "$job" --from "$archive" --out "$outputs" --list "$scratch/list" --part-size 10 --converter "$stalling" \
  -- -geom 128x128 -jpgquality 90
EI4_ELEMENTS=8 "$project/contrib/slurm/ei4-slurm" "$job" --cpus-per-task=2 >"$scratch/numbers"
read -r array failures <"$scratch/numbers"
said "array $array, failures $failures"

stalled_image 'stall 33.ei4'
kill -KILL "${worker[@]}"
requeued() { scontrol show job "$array" | grep -q 'Restarts=1'; }
wait_for 60 requeued
said "killed a worker in the middle of an image; its element queued itself again"
stalled_image 'stall 66.ei4'
lost=$(tr '\0' '\n' <"/proc/${worker[1]}/environ" | sed -n 's/^SLURMD_NODENAME=//p')
kill -KILL "${node[$lost]}"
wait "${node[$lost]}" 2>/dev/null || :
for process in "${worker[@]}"; do wait_for 10 gone "$process"; done
said "killed node $lost with all that it ran, in the middle of another image"

state_of() { scontrol show job "$1" | sed -n 's/.*JobState=\([A-Z]*\).*/\1/p' | tail -n 1; }
ended() { [[ $(state_of "$failures") =~ ^(COMPLETED|FAILED)$ ]]; }
wait_for 240 ended
scontrol show job "$array" >"$scratch/elements"
[[ $(state_of "$failures") == FAILED ]] || fail "the last job did not fail, although images are damaged"
[[ $(grep -c ' JobState=COMPLETED' "$scratch/elements") == 8 ]] || fail "not all elements came to their end"
restarts=$(sed -n 's/.*Restarts=\([0-9]*\).*/\1/p' "$scratch/elements" | paste -sd +)
((restarts >= 2)) || fail "the killed node's element was not queued again"
said "all elements ended; queued again: $((restarts))"
# With the two, what ran beside the killed worker and on the killed node was ended.
check_outcome 1 5
grep -q ' failed$' "$job/slurm/$failures.txt" || fail "the last job did not print the failures"
[[ -z $(find "$outputs" -name '.ei4-batch.*') ]] || fail "something half written is left"
