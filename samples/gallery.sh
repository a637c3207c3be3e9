#!/bin/sh
# Draws every kind of annotation in every orientation on dark and light ground into the sheets of docs/gallery, and
# every sample report at its full size into OUTPUT_FOLDER/samples.png. From the root of the project:
# gallery.sh BUILD_FOLDER OUTPUT_FOLDER
set -eu
build=$1
out=$2
converter=$build/src/driver/ei4convert
sheets=docs/gallery
font=/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf
fail() { printf 'gallery: %s\n' "$*" >&2; exit 1; }

mkdir -p "$out"
if [ ! -e "$out/.made-by-gallery" ] && [ -n "$(ls -A "$out")" ]; then
  fail "the folder $out holds files that are not mine"
fi
: >"$out/.made-by-gallery"
rm -rf "$out/cells" "$out/samples" "$out"/*.png
mkdir "$out/cells" "$out/samples"
[ -r "$font" ] || fail "there is no font $font for the captions (fonts-urw-base35)"

# render PICTURE OPTION...: a report that cannot be drawn leaves no picture, whatever the exit status says.
render() {
  picture=$1
  shift
  "$converter" "$@" -out "$picture" >/dev/null || fail "ei4convert failed on $picture"
  [ -s "$picture" ] || fail "ei4convert did not write $picture"
}

# The empty sheet with its captions, above each cell. The places are those that cells.awk gives.
set --
for row in 18 416; do
  odd=$((row + 174))
  set -- "$@" -annotate "+8+$row" '0  as stored' -annotate "+216+$row" '2  turned half' \
    -annotate "+424+$row" '4  mirrored left to right' -annotate "+632+$row" '6  mirrored top to bottom' \
    -annotate "+33+$odd" '1  turned a quarter' -annotate "+241+$odd" '3  turned three quarters' \
    -annotate "+449+$odd" '5  mirrored, other diagonal' -annotate "+657+$odd" '7  mirrored, main diagonal'
done
convert -size 840x804 'xc:#606060' -font "$font" -pointsize 12 -fill white "$@" "$out/cells/empty.ppm" ||
  fail "the captions could not be drawn"

# Puts the pictures of one kind on the sheet new.png. Nothing goes into it but pixels: the same bytes come out each
# time.
assemble() {
  kind=$1
  set -- "$out/cells/empty.ppm"
  while read -r what cell input x y rest; do
    [ "$what" = cell ] || continue
    render "$out/cells/$kind/$cell.ppm" -in "$input" -ima "$out/cells/$kind/$cell.txt"
    set -- "$@" "$out/cells/$kind/$cell.ppm" -geometry "+$x+$y" -composite
  done <"$out/cells/$kind/cells"
  convert "$@" -depth 8 -strip -define png:exclude-chunks=all -define png:compression-level=9 \
    -define png:compression-filter=1 "$out/new.png" || fail "the sheet of $kind could not be made"
}

# put NEW FILE: another version of the library may pack the same pixels otherwise, and then the file stays as it is.
put() {
  if [ -e "$2" ] && compare -metric AE "$1" "$2" null: 2>/dev/null; then
    kept=$((kept + 1))
    rm "$1"
  else
    mv "$1" "$2"
    printf 'new: %s\n' "$2"
  fi
}

awk -v out="$out/cells" -f samples/gallery/cells.awk samples/gallery/kinds.txt ||
  fail "the reports could not be written"
kept=0
for list in "$out"/cells/*/cells; do
  kind=$(basename "$(dirname "$list")")
  assemble "$kind"
  put "$out/new.png" "$sheets/$kind.png"
done

# The glyphs that the sheets are drawn with: the test of the gallery asks whether this machine draws the same.
convert -size 304x20 xc:black -font "${font%/*}/NimbusMonoPS-Regular.otf" -pointsize 12 -fill white \
  -annotate +4+14 '0123456789. abcdehilmnrtu ACDFHLPRUV °²' -depth 8 -strip -define png:exclude-chunks=all \
  "$out/new.png" || fail "the glyphs could not be drawn"
put "$out/new.png" tests/gallery/glyphs.png

set --
for report in samples/reports/*.txt; do
  name=$(basename "$report" .txt)
  render "$out/samples/$name.png" -in "samples/${name%_zoom}.ei4" -ima "$report"
  labelled=$out/samples/$name.miff
  size=$(identify -format '%wx%h' "$out/samples/$name.png") || fail "$name is no picture"
  convert "$out/samples/$name.png" -background '#404040' -gravity south -splice 0x24 -fill white \
    -font "$font" -pointsize 12 -annotate +0+6 "$name $size" "$labelled" || fail "$name could not be labelled"
  set -- "$@" "$labelled"
done
montage -background '#404040' "$@" -depth 8 -tile 3x -geometry '+8+8' "$out/samples.png" ||
  fail "the sheet of the samples could not be made"
rm -f "$out"/samples/*.miff
printf '%s sheets in %s, %s files as they were; the sample reports: %s\n' \
  "$(find "$sheets" -name '*.png' | wc -l)" "$sheets" "$kept" "$out/samples.png"
