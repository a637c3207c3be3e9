#!/bin/sh
# try_in_root.sh: run inside the clean root by try_package.sh, beside the package and the samples. Installs the package
# with its dependencies, runs all that it brings, leaves what came out in the folder "out", and removes it again.
set -eu
cd "$(dirname "$0")"
fail() { printf 'try_in_root: %s\n' "$*" >&2; exit 1; }
export LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive

test ! -e /usr/bin/ei4convert
apt-get install -y -qq --no-install-recommends ./ei4convert.deb
version=$(dpkg-query -W -f '${Version}' ei4convert)
dpkg -L ei4convert >files
cd /tmp/try
mkdir out
{
  ei4convert -in samples/radiograph.ei4 -geom 128x128 -out out/thumbnail.jpg -jpgquality 90
  ei4convert -in samples/ct_512.ei4 -out out/ct.raw
  ei4convert -in samples/spine.ei4 -ima samples/reports/spine.txt -out out/report.ppm
  ei4convert -in samples/spine.ei4 -ima samples/reports/spine.txt -out out/report.png
} >out/sizes
list=/usr/share/ei4convert/type.xml
mv $list type.xml
ei4convert -in samples/spine.ei4 -ima samples/reports/spine.txt -out out/without_font.ppm
mv type.xml $list

# What ei4make reads through libraries, where it was built with them: the report as PNG, the slice as DICOM. This window
# maps each of the 256 values to itself.
as_it_is='--window 255 --level 127'
needed=$(dpkg-query -W -f '${Depends}' ei4convert)
case $needed in
  *libpng*)
    ei4make $as_it_is out/report.png png.ei4 || fail 'ei4make does not read a PNG'
    ei4convert -in png.ei4 -out out/png_by_ei4make.raw >/dev/null || fail 'what came of a PNG does not convert'
    ;;
esac

# The tools: a picture to .ei4 and back, into a container and out of it again.
ei4convert -in samples/ct_512.ei4 -outcolor M08 -out ct8.raw >/dev/null || fail 'no 8-bit pixels'
ei4make --size 512x512 --format M08 $as_it_is ct8.raw ct8.ei4 || fail 'ei4make failed'
ei4convert -in ct8.ei4 -out back.raw >size || fail 'what ei4make wrote does not convert'
[ "$(cat size)" = '512 512' ] || fail 'what ei4make wrote has another size'
cmp ct8.raw back.raw || fail 'what ei4make wrote has other pixels'
case $needed in
  *libdcmtk*)
    element() { printf "$1"; }  # group and element, kind, length, value
    {
      head -c 128 /dev/zero
      printf DICM
      element '\002\000\000\000UL\004\000\034\000\000\000'
      element '\002\000\020\000UI\024\0001.2.840.10008.1.2.1\000'
      element '\050\000\002\000US\002\000\001\000'
      element '\050\000\004\000CS\014\000MONOCHROME2 '
      element '\050\000\020\000US\002\000\000\002'  # 512 rows, and as many columns
      element '\050\000\021\000US\002\000\000\002'
      element '\050\000\000\001US\002\000\010\000'
      element '\050\000\001\001US\002\000\010\000'
      element '\050\000\002\001US\002\000\007\000'
      element '\050\000\003\001US\002\000\000\000'
      element '\340\177\020\000OW\000\000\000\000\004\000'
      cat ct8.raw
    } >ct8.dcm
    ei4make $as_it_is ct8.dcm dicom.ei4 || fail 'ei4make does not read DICOM'
    cmp ct8.ei4 dicom.ei4 || fail 'DICOM became another picture than its pixels'
    ;;
esac
mkdir archive
erblb build archive/full.erblb ct8.ei4
erblb list archive/full.erblb | grep -q ' ct8\.ei4$' || fail 'erblb does not list what it packed'
ei4convert -blob -in archive/ct8.ei4 -out blob.raw >/dev/null || fail 'the entry does not convert'
cmp ct8.raw blob.raw || fail 'the entry has other pixels'
if command -v ei4info >/dev/null; then ei4info ct8.ei4 | grep -q 512 || fail 'ei4info does not tell the size'; fi
programs=''
for program in /usr/bin/ei4* /usr/bin/erblb; do
  name=${program##*/}
  grep -qx "$program" files || fail "$program is not the package's"
  programs="$programs $name"
  if [ "$name" != ei4convert ]; then
    [ "$("$name" --version)" = "$name $version" ] || fail "$name is not of the version $version"
  fi
  [ -s "/usr/share/man/man1/$name.1.gz" ] || fail "$name has no man page"
  gzip -t "/usr/share/man/man1/$name.1.gz"
  bash -n "/usr/share/bash-completion/completions/$name" || fail "the completion of $name cannot be read"
done

apt-get remove -y -qq --purge ei4convert
while read -r path; do
  [ ! -f "$path" ] && [ ! -L "$path" ] || fail "left behind: $path"
done <files
left=$(find /usr /etc /var/lib /var/cache -xdev \( -name '*ei4*' -o -name '*erblb*' -o -name '*gwav4*' \) \
  ! -path '/var/cache/apt/*' ! -path '/var/lib/apt/*')
[ -z "$left" ] || fail "left behind: $left"
printf 'try: installed, ran and removed:%s (%s)\n' "$programs" "$version"
