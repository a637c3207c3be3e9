#!/bin/sh
# architecture_test.sh PROJECT: each folder of src includes nothing but itself and what its library links, as
# docs/architecture.md says. All folders share one include path, so the compiler would not notice.
set -eu
cd "$1"
faults=$(mktemp)
trap 'rm -f "$faults"' EXIT

# linked KEYWORD FOLDER: what stands behind LINKS or PRIVATE_LINKS.
linked() { sed -n "s/^ *$1 \([A-Za-z0-9_: ]*\))*.*/\1/p" "src/$2/CMakeLists.txt"; }

# May FOLDER use OTHER? What it links publicly hands on what that links publicly.
may_use() {
  [ "$1" != "$2" ] || return 0
  for direct in $(linked LINKS "$1") $(linked PRIVATE_LINKS "$1"); do
    [ -d "src/$direct" ] || continue
    if [ "$direct" = "$2" ] || hands_on "$direct" "$2"; then return 0; fi
  done
  return 1
}
hands_on() {
  for public in $(linked LINKS "$1"); do
    if [ "$public" = "$2" ] || (hands_on "$public" "$2"); then return 0; fi
  done
  return 1
}

folders=0
for folder in src/*/; do
  folder=$(basename "$folder")
  folders=$((folders + 1))
  for other in $(grep -hoE '^#include "[a-z0-9]+/' src/"$folder"/* | sed 's/.*"//; s/\///' | sort -u); do
    may_use "$folder" "$other" || echo "src/$folder includes $other/, which its library does not link" >>"$faults"
  done
  case " $(linked PRIVATE_LINKS "$folder") " in *MagickCore*) continue ;; esac
  if grep -l '#include <magick' src/"$folder"/*; then echo "src/$folder includes MagickCore" >>"$faults"; fi
done

# The headers that others see do not show the library, neither themselves nor through another one.
for folder in draw driver; do
  hidden=$(grep -l '#include <magick' src/$folder/*.h)
  for header in $(sed -n '/HEADERS/,/SOURCES/p' "src/$folder/CMakeLists.txt" | grep -oE '[A-Za-z0-9_]+\.h'); do
    for inner in $hidden; do
      if [ "src/$folder/$header" = "$inner" ] || grep -q "\"${inner#src/}\"" "src/$folder/$header"; then
        echo "src/$folder/$header shows MagickCore" >>"$faults"
      fi
    done
  done
done

cat "$faults"
[ ! -s "$faults" ] || exit 1
[ "$folders" -ge 8 ] || { echo 'src has lost its folders'; exit 1; }
echo "$folders libraries use what they link"
