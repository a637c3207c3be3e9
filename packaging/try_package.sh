#!/bin/sh
# try_package.sh BUILD_FOLDER: makes the Debian packages of a finished build and tries them: lintian, the converter's in a
# clean Debian root with nothing but its own dependencies, the library's with the example program. What comes out there is
# compared with what the programs of the build folder make. Prints how long each stage took.
#
# The clean root takes mmdebstrap, root (or user namespaces) and the mirror that this machine's apt uses. Where it cannot
# be had the package is unpacked into a folder instead, its dependencies are looked up among the machine's own packages,
# and it is run from there.
set -eu
[ $# -eq 1 ] || { echo 'usage: try_package.sh BUILD_FOLDER' >&2; exit 2; }
build=$(CDPATH='' cd -- "$1" && pwd)
here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
source=$(dirname -- "$here")
packages=$build/packages

work=$(mktemp -d "${TMPDIR:-/tmp}/ei4package.XXXXXX")
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

fail() { printf 'try_package: %s\n' "$*" >&2; exit 1; }
# A clock that nobody sets.
seconds() { cut -d . -f 1 /proc/uptime; }
begun=$(seconds)
stage() {
  now=$(seconds)
  printf '  %3d s  %s\n' $((now - begun)) "$1"
  begun=$now
}

# The runs that are compared. A PPM has no date in it: the same bytes are the same pixels. A PNG has one.
make_pictures() {  # CONVERTER OUTPUT_FOLDER, in a folder with the samples
  "$1" -in samples/radiograph.ei4 -geom 128x128 -out "$2/thumbnail.jpg" -jpgquality 90
  "$1" -in samples/ct_512.ei4 -out "$2/ct.raw"
  "$1" -in samples/spine.ei4 -ima samples/reports/spine.txt -out "$2/report.ppm"
  "$1" -in samples/spine.ei4 -ima samples/reports/spine.txt -out "$2/report.png"
}

rm -rf "$packages"
(cd "$build" && cpack -G DEB) >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log" >&2; fail 'cpack failed'; }
runtime=$(ls "$packages"/ei4convert_*.deb)
development=$(ls "$packages"/libgwav4-dev_*.deb)
stage 'packages made'
for package in "$runtime" "$development"; do
  printf '         %s, %d KB\n' "${package##*/}" $(($(wc -c <"$package") / 1000))
  dpkg-deb -f "$package" Depends | sed -n 's/^./         needs &/p'
done

if command -v lintian >/dev/null; then
  lintian --allow-root --profile debian --fail-on error,warning "$runtime" "$development" || fail 'lintian complains'
  stage 'lintian has no errors and no warnings'
fi

mkdir "$work/expected" "$work/try"
(cd "$source" && make_pictures "$build/src/driver/ei4convert" "$work/expected") >"$work/expected/sizes"
convert "$work/expected/report.png" -depth 8 "rgb:$work/expected/png.raw"
cp "$runtime" "$work/try/ei4convert.deb"
cp "$here/try_in_root.sh" "$work/try"
mkdir -p "$work/try/samples/reports"
cp "$source/samples/radiograph.ei4" "$source/samples/ct_512.ei4" "$source/samples/spine.ei4" "$work/try/samples"
cp "$source/samples/reports/spine.txt" "$work/try/samples/reports"

compare() {  # FOLDER
  convert "$1/report.png" -depth 8 "rgb:$1/png.raw"
  # What ei4make read of the PNG, where it was built to do so.
  [ ! -e "$1/png_by_ei4make.raw" ] || cmp "$1/png_by_ei4make.raw" "$1/png.raw" || fail 'ei4make reads a PNG otherwise'
  for file in sizes thumbnail.jpg ct.raw report.ppm png.raw; do
    [ -s "$1/$file" ] || fail "$file is missing or empty"
    cmp "$1/$file" "$work/expected/$file" || fail "the installed converter makes another $file than the build's"
  done
  ! cmp -s "$1/without_font.ppm" "$1/report.ppm" || fail 'the report picture does not show its letters'
}

# The Debian part of this machine's own sources, and how apt gets through to them.
debian_sources() {
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian'
}
in_clean_root() {
  command -v mmdebstrap >/dev/null || { why='there is no mmdebstrap'; return 1; }
  . /etc/os-release
  [ "$ID" = debian ] || { why="this is no Debian, but $ID"; return 1; }
  debian_sources >"$work/sources.list"
  if [ ! -s "$work/sources.list" ] && [ "$(id -u)" -eq 0 ]; then
    apt-get update -qq || :
    debian_sources >"$work/sources.list"
  fi
  [ -s "$work/sources.list" ] || { why='apt knows no Debian mirror'; return 1; }
  apt-config dump --format '%f "%v";%n' --no-empty Acquire |
    grep -E '^Acquire::(https?|Retries|Check-Valid-Until|ForceIPv[46])' >"$work/apt.conf" || :
  echo 'Acquire::Languages "none";' >>"$work/apt.conf"

  # It mounts and unmounts what a root needs, and takes the whole root away again, also after a failure.
  if mmdebstrap --variant=apt --skip=cleanup --dpkgopt=force-unsafe-io --aptopt="$work/apt.conf" \
      --customize-hook="touch '$work/entered'" --customize-hook="copy-in '$work/try' /tmp" \
      --customize-hook='chroot "$1" sh /tmp/try/try_in_root.sh' --customize-hook="copy-out /tmp/try/out '$work'" \
      "$VERSION_CODENAME" /dev/null "$work/sources.list" >"$work/root.log" 2>&1; then
    sed -n 's/^try: /         /p' "$work/root.log"
    return 0
  fi
  [ ! -e "$work/entered" ] || { tail -n 40 "$work/root.log" >&2; fail 'the package failed in the clean root'; }
  why=$(tail -n 3 "$work/root.log")
  return 1
}

in_scratch_root() {
  # What is needed and not there is an error of this look-up; it takes no rights and no network.
  dpkg-checkbuilddeps -d "$(dpkg-deb -f "$runtime" Depends)" /dev/null || fail 'the dependencies are not installed here'
  dpkg-deb -x "$runtime" "$work/scratch"
  mkdir "$work/out"
  (
    cd "$source"
    bin=$work/scratch/usr/bin
    make_pictures "$bin/ei4convert" "$work/out" >"$work/out/sizes"
    mv "$work/scratch/usr/share/ei4convert/type.xml" "$work/type.xml"
    "$bin/ei4convert" -in samples/spine.ei4 -ima samples/reports/spine.txt -out "$work/out/without_font.ppm"
    mv "$work/type.xml" "$work/scratch/usr/share/ei4convert/type.xml"
    for tool in "$bin"/*; do
      [ "${tool##*/}" = ei4convert ] || "$tool" --version
    done
  )
}

if in_clean_root; then
  stage 'installed, run and removed in a clean root'
else
  printf 'NO CLEAN ROOT: %s\nThe package is only unpacked and run on this machine.\n' "$why"
  in_scratch_root
  stage 'unpacked and run from a folder'
fi
compare "$work/out"

# What is in the packages, on this machine from here on: the pages, and the library under a place of its own.
dpkg-deb -x "$runtime" "$work/unpacked"
if command -v man >/dev/null; then
  for page in "$work"/unpacked/usr/share/man/man1/*.1.gz; do
    complaints=$(MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -l "$page" 2>&1 >/dev/null) || fail "man cannot show $page"
    [ -z "$complaints" ] || fail "man complains: $complaints"
  done
fi
dpkg-deb -x "$development" "$work/place"
sh "$here/build_example.sh" "$source/examples" "$work/place/usr" "$work/example" || fail 'the example cannot be built'
sh "$here/run_example.sh" "$work/example" "$build/tools/ei4make/ei4make" "$source/samples" || fail 'the example is wrong'
stage 'the example built and run against the library, with CMake and with pkg-config'
