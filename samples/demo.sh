#!/bin/sh
# Converts the samples and shows what came out: demo.sh BUILD_FOLDER OUTPUT_FOLDER, from the root of the project.
set -eu
build=$1
out=$2
converter=$build/src/driver/ei4convert
samples=samples
mkdir -p "$out"
if [ ! -e "$out/.made-by-demo" ] && [ -n "$(ls -A "$out")" ]; then
  printf 'demo: the folder %s holds files that are not mine\n' "$out" >&2
  exit 1
fi
: >"$out/.made-by-demo"
rm -f "$out"/*.jpg "$out"/*.raw "$out"/*.png

# Runs the converter as a person would type it, and shows the size line that it prints.
convert_shown() {
  printf '  $ ei4convert %s\n' "$*"
  size=$("$converter" "$@") || { printf 'demo: ei4convert %s failed\n' "$*" >&2; exit 1; }
  printf '    %s\n' "$size"
}

for image in ct_512 radiograph mr ultrasound grey8 spine fetus; do
  printf '%s\n' "$image"
  convert_shown -in "$samples/$image.ei4" -geom 128x128 -out "$out/${image}_thumbnail.jpg" -jpgquality 90
  convert_shown -in "$samples/$image.ei4" -geom 512x512 -out "$out/${image}_screen.jpg" -jpgquality 90
  convert_shown -in "$samples/$image.ei4" -out "$out/${image}_full.jpg" -jpgquality 90
done
printf 'black and white exchanged\n'
convert_shown -in "$samples/radiograph.ei4" -geom 512x512 -invert -out "$out/radiograph_inverted.jpg" -jpgquality 90
printf "entries of containers: one in two parts, of which the initial one alone makes the thumbnail, and a whole one\\n"
convert_shown -blob -in "$samples/archive/radiograph.ei4" -geom 128x128 -out "$out/blob_entry_thumbnail.jpg" -jpgquality 90
convert_shown -blob -in "$samples/archive/mr.ei4" -out "$out/blob_entry.jpg" -jpgquality 90
printf 'raw pixels, 16 bits grey, and the same again as input\n'
convert_shown -in "$samples/ct_512.ei4" -out "$out/ct_512.raw"
convert_shown -in "$out/ct_512.raw" -size 512x512 -incolor M16 -outcolor M08 -window 65536 -level 32768 -slope 1 \
  -intercept 0 -out "$out/ct_512_from_raw.jpg" -jpgquality 90

# A report picture prints nothing and exits with 0 even when there is none, so the picture itself is asked.
report_shown() {
  picture=$1
  shift
  printf '  $ ei4convert %s -out %s\n' "$*" "$picture"
  "$converter" "$@" -out "$picture" || { printf 'demo: ei4convert %s failed\n' "$*" >&2; exit 1; }
  size=$(identify -format '%w %h' "$picture") || { printf 'demo: no picture from ei4convert %s\n' "$*" >&2; exit 1; }
  printf '    %s\n' "$size"
}
printf 'reports: measurements and orientation letters drawn over the image\n'
for report in "$samples"/reports/*.txt; do
  name=$(basename "$report" .txt)
  report_shown "$out/${name}_report.png" -in "$samples/${name%_zoom}.ei4" -ima "$report"
done
printf 'the same as JPEG, refitted to a box, and from an entry of a container\n'
report_shown "$out/spine_report_box.jpg" -in "$samples/spine.ei4" -ima "$samples/reports/spine.txt" -geom 400x800 \
  -jpgquality 90
report_shown "$out/blob_entry_report.jpg" -blob -in "$samples/archive/mr.ei4" -ima "$samples/reports/mr.txt" \
  -jpgquality 90

montage -background '#202020' -fill white -label '%t  %wx%h' "$out"/*.jpg "$out"/*_report.png -depth 8 -tile 5x \
  -geometry '256x256+6+6' "$out/index.png" || { printf 'demo: the contact sheet could not be made\n' >&2; exit 1; }
printf '\nContact sheet: %s\n' "$out/index.png"
