#!/bin/bash
# One element of the array that ei4-slurm submits: ei4-element.sh EI4_BATCH JOB ELEMENTS
set -u
batch=$1 job=$2 elements=$3
cd "$job/parts" || exit 1

# The parts are named by consecutive numbers of six digits.
for ((part = SLURM_ARRAY_TASK_ID; ; part += elements)); do
  printf -v name %06d "$part"
  [[ -f $name ]] || break
  printf '%s\n' "$name"
done | xargs -P "${SLURM_CPUS_PER_TASK:-1}" -n 1 "$batch" part "$job" && exit 0

# A worker was killed or could not write. Slurm itself only queues again what a failed node ran.
if ((${SLURM_RESTART_COUNT:-0} < 3)); then
  scontrol requeue "$SLURM_JOB_ID" && sleep 60  # ends with the requeuing
fi
exit 1
