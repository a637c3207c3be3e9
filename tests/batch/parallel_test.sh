#!/bin/bash
# parallel_test.sh PROJECT CONVERTER EI4MAKE COUNT: an archive on one machine. A worker is killed in the middle of an
# image, later everything is killed; then the same command goes on.
project=$1 converter=$2 ei4make=$3
. "$project/tests/batch/support.sh"
batch=$project/contrib/ei4-batch
make_archive "$4"
make_stalling_converter
plain_run
said "$4 images"

outputs=$scratch/thumbnails
job=$scratch/job
"$batch" new "$job" --from "$archive" --out "$outputs" --list "$scratch/list" --part-size 10 --converter "$stalling" \
  -- -geom 128x128 -jpgquality 90

setsid "$batch" run "$job" --jobs 3 >"$scratch/first.txt" 2>&1 &
first=$!
started+=("$first")
at_end "kill -KILL -- -$first 2>/dev/null"  # what it started
stalled_image 'stall 33.ei4'
kill -KILL "${worker[@]}"
said "killed a worker in the middle of an image"
stalled_image 'stall 66.ei4'
kill -KILL -- -"$first"  # ei4-batch and parallel; parallel's workers have a group of their own
kill -KILL "${worker[@]}"
wait "$first" 2>/dev/null || :
said "killed everything in the middle of another"
no_workers() { ! pgrep -f "ei4-batch part $job" >/dev/null; }
wait_for 60 no_workers  # the others finish their parts
[[ ! -e $job/failures.txt ]] || fail "the first run came to its end"

status=0
"$batch" run "$job" --jobs 3 >"$scratch/second.txt" 2>&1 || status=$?
check_outcome "$status" 2
cmp <(sed '$d' "$scratch/second.txt" | grep $'^refused 1\t') <(grep $'^refused 1\t' "$job/failures.txt") ||
  fail "the run did not print the failures"
[[ -z $(find "$outputs" -name '.ei4-batch.*') ]] || fail "something half written is left"

# Everything is done: a third run starts no worker.
logs=$(find "$job/log" -type f | wc -l)
"$batch" run "$job" --jobs 3 >/dev/null 2>&1 && fail "the third run forgot the failures"
[[ $(find "$job/log" -type f | wc -l) == "$logs" ]] || fail "the third run converted again"
said "a third run had nothing to do"

# A failure's command line does what the list says, typed as it stands.
[[ $(head -n 1 "$job/failures.txt") == $'refused 1\t'* ]]
line=$(head -n 1 "$job/failures.txt")
status=0
[[ $line != *$'\n'* ]] && eval "${line#*$'\t'}" || status=$?
[[ $status == 1 ]] || fail "the listed command ended with $status: $line"
