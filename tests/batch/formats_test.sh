#!/bin/bash
# formats_test.sh PROJECT CONVERTER EI4MAKE ERBLB: entries of containers, report pictures, raw pixels, a full disk,
# and what `ei4-batch new` refuses.
project=$1 converter=$2 ei4make=$3 erblb=$4
. "$project/tests/batch/support.sh"
batch=$project/contrib/ei4-batch
samples=$project/samples
run() {
  parallel_status=0
  "$batch" run "$job" --jobs 2 --nice 10 --memfree 50M --load 1000 --retries 2 >"$scratch/said" 2>&1 ||
    parallel_status=$?
}

# Entries of a container pair, whole ones and such in two parts, and one that is not there.
job=$scratch/blob
for container in full initial; do "$erblb" list "$samples/archive/$container.erblb"; done >"$scratch/entries"
{
  grep -oE '[^ ]+\.ei4$' "$scratch/entries" | sed -E 's/\.[ft]\.ei4$/.ei4/' | sort -u
  echo missing.ei4
} | "$batch" new "$job" --lines --from "$samples/archive" --out "$scratch/blob.out" --converter "$converter" \
  -- -blob -geom 128x128 -jpgquality 90
run
[[ $parallel_status == 1 ]] || fail "a missing entry is no failure"
[[ $(cd "$scratch/blob.out" && echo *) == "mr.jpg radiograph.jpg" ]] || fail "not the entries of the containers"
[[ $(tr '\0' '\n' <"$job/failed") == missing.ei4 ]] || fail "not the missing entry is listed"
"$converter" -blob -in "$samples/archive/radiograph.ei4" -geom 128x128 -out "$scratch/radiograph.jpg" -jpgquality 90
cmp "$scratch/radiograph.jpg" "$scratch/blob.out/radiograph.jpg"

# Report pictures: the converter ends with 0 whatever became of them.
job=$scratch/reports
printf 'mr.ei4\0spine.ei4\0grey8.ei4\0' |
  "$batch" new "$job" --from "$samples" --out "$scratch/reports.out" --reports "$scratch/texts" --ending png \
    --converter "$converter"
mkdir "$scratch/texts"
cp "$samples/reports/mr.txt" "$samples/reports/spine.txt" "$scratch/texts"
run
[[ $parallel_status == 1 ]] || fail "a picture without its report is no failure"
[[ $(cd "$scratch/reports.out" && echo *) == "mr.png spine.png" ]] || fail "not the two report pictures"
grep -q '^refused 0	' "$job/failures.txt" || fail "the missing report is not listed"

# Raw pixels, and a list that is made again of what failed.
job=$scratch/raw
mkdir "$scratch/in" "$scratch/bin"
ln -s "$converter" "$scratch/bin/ei4convert"
cp "$samples/mr.ei4" "$scratch/in/good.ei4"
: >"$scratch/in/bad.ei4"
(cd "$scratch/in" && find . -name '*.ei4' -print0) |
  PATH=$scratch/bin:$PATH "$batch" new "$job" --from "$scratch/in" --out "$scratch/raw.out" --ending raw
run
[[ $parallel_status == 1 ]] || fail "a damaged image is no failure"
[[ $(stat -c %s "$scratch/raw.out/good.raw") == $((384 * 384 * 2)) ]] || fail "raw pixels"
cp "$samples/ct_512.ei4" "$scratch/in/bad.ei4"
"$batch" new "$scratch/again" --list "$job/failed" --from "$scratch/in" --out "$scratch/raw.out" --ending raw \
  --converter "$converter"
job=$scratch/again
run
[[ $parallel_status == 0 && -s $scratch/raw.out/bad.raw ]] || fail "a repaired image did not succeed"

# An empty output is none; without the joblog every output is looked at again.
: >"$scratch/raw.out/bad.raw"
run
[[ $parallel_status == 1 && ! -s $scratch/raw.out/bad.raw ]] || fail "an empty output counts as made"
rm "$job/joblog"
run
[[ $parallel_status == 0 && -s $scratch/raw.out/bad.raw ]] || fail "an empty output was not made again"

# A converter whose output cannot be written whole says nothing of it.
job=$scratch/full
cat >"$scratch/cut" <<STUB
#!/bin/sh
echo "\$*" >>"$scratch/tries"
"$converter" "\$@" && for out; do case \$out in *.jpg) truncate -s 200 "\$out" ;; esac; done
STUB
chmod +x "$scratch/cut"
printf 'mr.ei4\0' |
  "$batch" new "$job" --from "$samples" --out "$scratch/full.out" --converter "$scratch/cut" -- -jpgquality 90
run
[[ $parallel_status == 1 && ! -e $scratch/full.out/mr.jpg ]] || fail "a cut JPEG counts as an output"
[[ $(wc -l <"$scratch/tries") == 2 ]] || fail "a part that could not be written was not tried twice"
grep -q '^broken 0	' "$job/failures.txt" || fail "the cut JPEG is not listed as broken"
ln -sf "$converter" "$scratch/cut"
run
[[ $parallel_status == 0 && -s $scratch/full.out/mr.jpg ]] || fail "the broken part was not tried again by the next run"

# What is wrong with a list or an option is said at once, and leaves nothing behind.
refused() {
  local status=0
  "$batch" new "$scratch/no job" --out "$scratch/no" --converter "$converter" "$@" >/dev/null 2>&1 || status=$?
  [[ $status == 2 && ! -e "$scratch/no job" ]] || fail "not refused: $*"
  [[ -z $(find "$scratch" -maxdepth 1 -name 'no job*') ]] || fail "left behind by: $*"
}
jpg=(-- -jpgquality 90)
refused "${jpg[@]}" < <(printf '/etc/passwd\0')
refused "${jpg[@]}" < <(printf 'a/../../b.ei4\0')
refused "${jpg[@]}" < <(printf 'a.ei4\0a\0')
refused "${jpg[@]}" </dev/null
refused < <(printf 'a.ei4\0')
refused --ending 'j pg' "${jpg[@]}" < <(printf 'a.ei4\0')
refused --part-size 0 "${jpg[@]}" < <(printf 'a.ei4\0')
refused -- -jpgquality 90 -out x.jpg < <(printf 'a.ei4\0')
refused --frm x "${jpg[@]}" < <(printf 'a.ei4\0')
"$batch" --help | head -n 1 | grep -q '^ei4-batch: ' || fail "no help"
for option in $(grep -oE -e '--[a-z]+[a-z-]*' "$project/docs/batch.md" | sort -u); do
  grep -qF -e "$option" "$batch" "$project"/contrib/slurm/* || fail "docs/batch.md tells of $option, which is not there"
done
