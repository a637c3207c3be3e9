#!/bin/sh
# install_test.sh CMAKE PROJECT BUILD FOLDER: an installation works from its own place, also where it has been moved to:
# programs, font list, pages; the library with either way to find it. Without the development component nothing of the
# library is there.
set -eu
cmake=$1
project=$2
build=$3
folder=$4
fail() { printf '%s\n' "$*" >&2; exit 1; }
rm -rf "$folder"
mkdir -p "$folder"

"$cmake" --install "$build" --component runtime --prefix "$folder/runtime" >"$folder/log"
[ -x "$folder/runtime/bin/ei4convert" ] || fail 'the converter is not installed'
left=$(find "$folder/runtime" -name '*gwav4*')
[ -z "$left" ] || fail "the library came without being asked for: $left"

# As a packager does it: one prefix for the files' contents, and another place for the files.
DESTDIR=$folder/destination "$cmake" --install "$build" --prefix /opt/ei4 >"$folder/log"
mv "$folder/destination/opt/ei4" "$folder/moved"
place=$folder/moved
for name in ei4convert ei4info ei4make erblb; do
  [ -x "$place/bin/$name" ] || fail "$name is not installed"
  [ -s "$place/share/man/man1/$name.1" ] || fail "the page of $name is not installed"
  [ -s "$place/share/bash-completion/completions/$name" ] || fail "the completion of $name is not installed"
done
doc=$place/share/doc/ei4convert
for name in LICENSE README.md CHANGELOG.md docs/formats.md samples/mr.ei4 examples/ei4_to_pnm.cpp; do
  [ -s "$doc/$name" ] || fail "$name is not installed"
done
# What a build knows of its own place must not be in what others read.
named=$(grep -rlF -e "$build" -e "$project" "$place"/lib*/cmake "$place"/lib*/pkgconfig || :)
[ -z "$named" ] || fail "the build's place is named in: $named"

# The letters of a report: they come only where the font list is found.
report() { "$1/bin/ei4convert" -in "$doc/samples/mr.ei4" -ima "$doc/samples/reports/mr.txt" -out "$folder/$2.ppm"; }
report "$place" moved
"$build/src/driver/ei4convert" -in "$doc/samples/mr.ei4" -ima "$doc/samples/reports/mr.txt" -out "$folder/built.ppm"
[ -s "$folder/moved.ppm" ] || fail 'there is no report picture'
cmp "$folder/moved.ppm" "$folder/built.ppm" || fail "the report picture is another one than the build's"
mv "$place/share/ei4convert/type.xml" "$folder"
report "$place" without_font
mv "$folder/type.xml" "$place/share/ei4convert/type.xml"
! cmp -s "$folder/moved.ppm" "$folder/without_font.ppm" || fail 'the report picture does not show its letters'

sh "$project/packaging/build_example.sh" "$doc/examples" "$place" "$folder/example" || fail 'the example cannot be built'
sh "$project/packaging/run_example.sh" "$folder/example" "$place/bin/ei4make" "$project/samples" ||
  fail 'the example is wrong'
