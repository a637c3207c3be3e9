#!/bin/bash
# What the tests of contrib/ have in common. Sourced by bash; wants $converter, $ei4make and $project, gives $scratch.
set -eu
export LC_ALL=C

fail() { printf 'FAILED: %s\n' "$*" >&2; exit 1; }
said() { printf '%4d s  %s\n' "$SECONDS" "$*"; }

# Processes that a test started, ended when it ends however it ends; `at_end` adds what else there is to undo.
started=()
undo=()
at_end() { undo=("$*" "${undo[@]}"); }
clean_up() {
  local status=$? step
  set +e
  { ((${#started[@]} == 0)) || { kill -KILL "${started[@]}"; wait "${started[@]}"; }; } 2>/dev/null
  for step in "${undo[@]}"; do eval "$step"; done
  ((status == 0)) || [[ -z ${EI4_KEEP:-} ]] || { printf 'kept: %s\n' "$scratch" >&2; exit $status; }
  rm -rf -- "$scratch"
  exit $status
}
scratch=$(mktemp -d "${TMPDIR:-/tmp}/ei4-batch.XXXXXX")
trap clean_up EXIT
trap 'exit 1' INT TERM HUP

wait_for() {  # SECONDS COMMAND...
  local seconds=$1 tries
  shift
  for ((tries = 0; tries < seconds * 20; ++tries)); do
    if "$@"; then return 0; fi
    sleep 0.05
  done
  fail "waited $seconds s for: $*"
}

# make_archive COUNT: $scratch/archive with small pictures, no two alike, and $scratch/list with their names, in an
# order that is no longer theirs. Of each 25 names one is damaged (six kinds in turns); $scratch/damaged holds these.
make_archive() {
  local count=$1 i name folder damaged
  archive=$scratch/archive
  mkdir -p "$archive/wards/a b" "$archive/wards/-x" "$archive/\"quoted' \$(folder)"
  : >"$scratch/unsorted"
  : >"$scratch/damaged"
  for ((i = 0; i < count; ++i)); do
    case $((i % 4)) in
      0) folder= ;;
      1) folder='wards/a b/' ;;
      2) folder='wards/-x/' ;;
      3) folder="\"quoted' \$(folder)/" ;;
    esac
    case $((i % 10)) in
      0) name="-in $i.ei4" ;;
      1) name="it's \"$i\".ei4" ;;
      2) name=$'two\nlines '"$i.ei4" ;;
      3) name="%d {} \\n *$i?.ei4" ;;
      4) name=$'caf\xc3\xa9 \xff'"$i.ei4" ;;
      *) name="$i.ei4" ;;
    esac
    case $i in 33 | 66) name="stall $i.ei4" ;; esac
    printf '%s\0' "$folder$name" >>"$scratch/unsorted"
    damaged=0
    if ((i % 25 == 7)); then
      damaged=1
      printf '%s\0' "$folder$name" >>"$scratch/damaged"
    fi
    make_image "$archive/$folder$name" "$i" $damaged
  done
  shuf -z --random-source=<(yes 'a fixed order') <"$scratch/unsorted" >"$scratch/list"
}

make_image() {  # FILE NUMBER DAMAGED
  local number=$2 whole=$scratch/whole.ei4
  # The window differs, so that the outputs do.
  yes "picture $number " | head -c 1280 >"$scratch/pixels" || :
  "$ei4make" --size 40x32 --format M08 --window $((100 + number)) --level 90 "$scratch/pixels" "$whole"
  if (($3 == 0)); then mv -- "$whole" "$1"; return; fi
  case $((number / 25 % 6)) in
    0) : >"$1" ;;                                                       # empty
    1) head -c 40 "$whole" >"$1" ;;                                     # too short
    2) { head -c 24 "$whole"; printf 'GW99'; tail -c +29 "$whole"; } >"$1" ;;  # a foreign stream
    3) { head -c 6 "$whole"; printf '\036\0'; tail -c +9 "$whole"; } >"$1" ;;  # a preamble of 30 bytes
    4) ;;                                                               # not there
    5) mkdir -p -- "$1" ;;                                              # a folder
  esac
}

# make_stalling_converter: $stalling converts as $converter does, except that for the images named "stall ..." it
# stops once in the middle, its file half written, and says so in $scratch/stalled/NAME: its own process and namespace
# of processes. It goes on when the file beside that, NAME.go, appears.
make_stalling_converter() {
  stalling=$scratch/ei4convert
  mkdir -p "$scratch/stalled"
  cat >"$stalling" <<STUB
#!/bin/bash
in=\$2
name=\${in##*/}
printf '%s\0' "\$in" >>"$scratch/calls"
if [[ \$name == stall* ]] && (set -C; : >"$scratch/stalled/\$name.first") 2>/dev/null; then
  for ((i = 1; i < \$#; ++i)); do [[ \${!i} != -out ]] || { ((++i)); out=\${!i}; }; done
  "$converter" "\$@" >/dev/null
  truncate -s 300 "\$out"
  printf '%s %s\n' "\$(readlink /proc/self/ns/pid)" \$\$ >"$scratch/stalled/\$name.new"
  mv "$scratch/stalled/\$name.new" "$scratch/stalled/\$name"
  until [[ -e "$scratch/stalled/\$name.go" ]]; do sleep 0.1; done
fi
exec "$converter" "\$@"
STUB
  chmod +x "$stalling"
}

# The number that a process of another namespace has in this one.
process_here() {  # NAMESPACE NUMBER
  local process
  for process in /proc/[0-9]*; do
    [[ $(readlink "$process/ns/pid") == "$1" ]] || continue
    [[ $(awk '/^NSpid:/ { print $NF }' "$process/status" 2>/dev/null) == "$2" ]] || continue
    printf '%s\n' "${process#/proc/}"
    return
  done 2>/dev/null
  fail "no process $2 in $1"
}

# The workers above a process: every process up to the first that is no "ei4-batch part".
workers_above() {
  local process=$1 words
  while process=$(ps -o ppid= -p "$process" | tr -d ' ') && [[ -n $process ]]; do
    words=$(tr '\0' ' ' <"/proc/$process/cmdline" 2>/dev/null) || return 0
    [[ $words == */ei4-batch\ part\ * && $words == */bash\ * ]] || return 0
    printf '%s\n' "$process"
  done
}

gone() { ! kill -0 "$1" 2>/dev/null; }

# The host that a process lives on: its network namespace is named ei4-PID-N.
host_of() { printf 'host%s\n' "$(ip netns identify "$1" | sed 's/.*-//')"; }

# stalled_image NAME: waits until the converter stands in the middle of it; sets worker to its processes.
stalled_image() {
  local stub space
  wait_for 120 test -e "$scratch/stalled/$1"
  read -r space stub <"$scratch/stalled/$1"
  stub=$(process_here "$space" "$stub")
  worker=("$stub")
  mapfile -t -O 1 worker < <(workers_above "$stub")
  ((${#worker[@]} > 1)) || fail "no worker above the converter of $1"
  [[ -n $(find "$outputs" -name '.ei4-batch.*' -size -1k -o -name '.ei4-batch.*' -size 1k) ]] ||
    fail "$1: nothing is half written"
  [[ -z $(find "$outputs" -name "${1%.ei4}.jpg") ]] || fail "$1 has its name although it is half written"
}

# plain_run: $scratch/plain, what one run of the converter after the other makes of the list.
plain_run() {
  local name target
  plain=$scratch/plain
  while IFS= read -r -d '' name; do
    target=$plain/${name%.ei4}.jpg
    mkdir -p -- "${target%/*}"
    "$converter" -in "$archive/$name" -geom 128x128 -out "$target" -jpgquality 90 >"$scratch/size" || rm -f -- "$target"
  done <"$scratch/list"
}

hashes() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum -z | sort -z); }
count() { grep -zc '' "$1" || :; }
records() { find "$job/log" -type f -exec cat {} + | grep -zE "^$1 [0-9]+ " | sed -zE 's/^[a-z]+ [0-9]+ //' | sort -z; }

# Nothing lost, nothing done twice, the failures listed exactly. $1: the last status of ei4-batch; $2: how many images
# may have been begun more than once, because a worker was killed in the middle of them.
check_outcome() {
  local good begun_again
  [[ $1 == 1 ]] || fail "the status is $1, although images are damaged"
  hashes "$plain" >"$scratch/want"
  hashes "$outputs" >"$scratch/have"
  cmp "$scratch/want" "$scratch/have" || fail "the outputs differ from those of a plain run"
  good=$(($(count "$scratch/list") - $(count "$scratch/damaged")))
  [[ $(count "$scratch/have") == "$good" ]] || fail "not $good outputs"

  records 'done' >"$scratch/done"
  comm -z -23 <(sort -z "$scratch/list") <(sort -z "$scratch/damaged") >"$scratch/good"
  cmp "$scratch/good" "$scratch/done" || fail "not each image was converted exactly once"

  sort -z "$scratch/calls" | uniq -zc | sed -z 's/^ *//' >"$scratch/counted"
  [[ $(count "$scratch/counted") == "$(count "$scratch/list")" ]] || fail "not each image was begun"
  begun_again=$(grep -zv '^1 ' "$scratch/counted" | sed -zE "s/^[0-9]+ //; s|^$archive/||" | sort -z |
    comm -z -12 - "$scratch/good" | grep -zc '' || :)
  ((begun_again <= $2)) || fail "$begun_again images were begun more than once: more than $2"

  cmp <(sort -z "$scratch/damaged") <(sort -z "$job/failed") || fail "the failures are not the damaged images"
  [[ $(grep -c $'^refused 1\t' "$job/failures.txt") == "$(count "$scratch/damaged")" ]] ||
    fail "failures.txt does not say of each damaged image that it was refused with 1"
  sort -z "$scratch/damaged" | cmp - <(records refused | uniq -z) || fail "others than the damaged were refused"
  said "$good outputs, each made once and the same as one by one; $(count "$scratch/damaged") failures listed;" \
    "$begun_again begun again"
}
