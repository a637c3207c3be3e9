#!/bin/sh
# Renders every kind of annotation in every orientation into one sheet, and every sample report at its full
# size into another: gallery.sh BUILD_FOLDER OUTPUT_FOLDER, from the root of the project.
set -eu
build=$1
out=$2
converter=$build/src/driver/ei4convert
fail() { printf 'gallery: %s\n' "$*" >&2; exit 1; }

mkdir -p "$out"
if [ ! -e "$out/.made-by-gallery" ] && [ -n "$(ls -A "$out")" ]; then
  fail "the folder $out holds files that are not mine"
fi
: >"$out/.made-by-gallery"
rm -rf "$out/cells" "$out/samples" "$out"/*.png
mkdir "$out/cells" "$out/samples"

# render PICTURE OPTION...: a report that cannot be drawn leaves no picture, whatever the exit status says.
render() {
  picture=$1
  shift
  "$converter" "$@" -out "$picture" >/dev/null || fail "ei4convert failed on $picture"
  [ -s "$picture" ] || fail "ei4convert did not write $picture"
}

# A picture that looks different in each orientation: dark and light half, a wedge in the corner of the origin,
# grey steps along the lower edge, the lightest on the right.
width=180
height=140
base=$out/cells/base.raw
convert -size 90x$height 'xc:gray(20%)' 'xc:gray(80%)' +append -fill 'gray(50%)' -draw 'polygon 0,0 30,0 0,30' \
  \( -size 18x9 'xc:gray(0%)' 'xc:gray(11%)' 'xc:gray(22%)' 'xc:gray(33%)' 'xc:gray(44%)' 'xc:gray(56%)' \
  'xc:gray(67%)' 'xc:gray(78%)' 'xc:gray(89%)' 'xc:gray(100%)' +append \) -gravity south -composite \
  -colorspace gray -depth 8 "gray:$base" || fail "the base picture could not be made"

# One row a kind: a name and the line of the report. Colours are written blue first: 00ffff is yellow. Nothing
# shows of a calibration.
rows() {
  cat <<'TEXT'
ruler ruler_x 1 00ffff 28 104 1 1 20 112 66 42 0 | 152 38 70.2+mm
angle angle_x 2 ffff00 34 96 1 1 26 106 118 72 0 | 140 100 118 34 38.6%c2%b0
cobb_angle cobangle_x 3 00ff00 30 32 1 1 22 26 142 58 0 | 30 116 120 46 126 98 19.5%c2%b0
oval oval_x 4 00a0ff 46 36 1 1 38 30 90 70 0 | 134 104 11.7+cm%c2%b2 11.7
houns houns_x 5 ff80ff 56 40 1 1 48 34 90 70 0 | 124 100 127+HU 127.4
free free_x 6 0000ff 70 34 1 1 60 28 92 72 0 | 6 70 34 118 28 140 66 120 104 84 112 56 80 12.4+cm%c2%b2
pointer pointer_x 7 00ff00 64 88 1 1 54 82 0 0 0 | 3 4 Nodule
free_pointer freepointer_x 8 ffff00 60 84 1 1 50 92 0 0 0 | 112 58 Nodule
text text_x 9 ffffff 60 60 1 0 50 56 0 0 0 | 0 Right+side
spine_label spinelabel_x 10 00ff00 90 70 1 0 60 70 0 0 0 | 0 19 0 0 L1
gestational_sac obm_gsd_x 11 00ffff 36 84 1 1 28 96 90 52 0 | 146 84 55.0+mm
crown_rump obm_crl_x 12 00a0ff 40 50 1 1 32 42 112 44 0 | 138 96 54.1+mm
head_width obm_bpd_x 13 ffff00 90 28 1 1 78 28 124 92 0 | 90 112 42.0+mm
head_circumference obm_hc_x 14 00ffff 40 35 1 1 34 28 90 70 0 | 140 105 134.6+mm
belly_circumference obm_ac_x 15 ff80ff 52 32 1 1 46 24 90 70 0 | 128 108 119.4+mm
thigh_bone obm_fl_x 16 00ff00 40 92 1 1 32 100 100 42 0 | 142 64 52.9+mm
calibration calib_x 17 00ffff 30 70 1 1 20 70 90 50 0 | 150 70 60.0+mm
roi roi y 36 30 150 112
TEXT
}

set --
while read -r name line; do
  for orientation in 0 1 2 3 4 5 6 7; do
    size="$width $height"
    case $orientation in 1 | 3 | 5 | 7) size="$height $width" ;; esac
    cell=$out/cells/${name}_$orientation
    cat >"$cell.txt" <<TEXT
sized $size 0 $orientation
clip 1.0 0 0 $size
pixel 0.5 0.5
light 256 128 0 0
patient_orientation 1 L F
$line
TEXT
    render "$cell.png" -in "$base" -size "${width}x$height" -incolor M08 \
      -ima "$cell.txt" -slope 1 -intercept 0
    set -- "$@" -label "$name $orientation" "$cell.png"
  done
done <<TEXT
$(rows)
TEXT
montage -background '#404040' -fill white -pointsize 11 "$@" -depth 8 -tile 8x -geometry '+4+4' "$out/index.png" ||
  fail "the sheet could not be made"

set --
for report in samples/reports/*.txt; do
  name=$(basename "$report" .txt)
  render "$out/samples/$name.png" -in "samples/${name%_zoom}.ei4" -ima "$report"
  labelled=$out/cells/sample_$name.miff
  size=$(identify -format '%wx%h' "$out/samples/$name.png") || fail "$name is no picture"
  convert "$out/samples/$name.png" -background '#404040' -gravity south -splice 0x24 -fill white \
    -annotate +0+6 "$name $size" "$labelled" || fail "$name could not be labelled"
  set -- "$@" "$labelled"
done
montage -background '#404040' "$@" -depth 8 -tile 3x -geometry '+8+8' "$out/samples.png" ||
  fail "the sheet of the samples could not be made"
rm -f "$out"/cells/*.miff
printf '%s pictures; sheets: %s and %s\n' "$(find "$out/cells" "$out/samples" -name '*.png' | wc -l)" "$out/index.png" \
  "$out/samples.png"
