#!/bin/sh
# links_test.sh PROJECT: in every page, each relative link leads to a file and to a heading in it, and each file that is
# named in `code` is there.
set -eu
cd "$1"
faults=$(mktemp)
trap 'rm -f "$faults"' EXIT

pages=$(find . -name '*.md' -not -path './build/*' -not -path './demo/*' -not -path './gallery/*' -not -path './.git/*' | sort)

# The names by which links reach a page's headings: lower case, hyphens for blanks, no other signs.
anchors() {
  awk '/^```/ { code = !code } !code && /^##* / { sub(/^#+ /, ""); print tolower($0) }' "$1" |
    LC_ALL=C tr -cd 'a-z0-9 _\n-' | tr ' ' '-'
}

# What stands outside of fenced blocks.
prose() { awk '/^```/ { code = !code; next } !code' "$1"; }

links() { prose "$1" | grep -oE '\]\([^)]+\)|src="[^"]+"' | sed 's/^](//; s/)$//; s/^src="//; s/"$//' | sort -u; }

for page in $pages; do
  folder=$(dirname "$page")
  links "$page" | while read -r link; do
    case $link in http://* | https://* | mailto:*) continue ;; esac
    file=${link%%#*}
    target=$page
    [ -z "$file" ] || target=$folder/$file
    if [ ! -e "$target" ]; then
      printf '%s: no file for the link %s\n' "$page" "$link"
    elif [ "$file" != "$link" ] && ! anchors "$target" | grep -qxF -- "${link#*#}"; then
      printf '%s: no heading for the link %s\n' "$page" "$link"
    fi
  done

  # Files in `code`: from the root, from src or tools, or from the page's folder; sources also without their extension.
  prose "$page" | grep -oE '`[A-Za-z0-9_.-]+(/[A-Za-z0-9_.-]+)+`' | tr -d '`' | sort -u | while read -r name; do
    first=${name%%/*}
    case $name in *NAME* | build/* | demo/* | gallery/*) continue ;; esac
    [ -d "$first" ] || [ -d "src/$first" ] || [ -d "tools/$first" ] || continue
    found=no
    for base in . src tools "$folder"; do
      for ending in '' .h .cpp; do [ ! -e "$base/$name$ending" ] || found=yes; done
    done
    [ "$found" = yes ] || printf '%s: no file %s\n' "$page" "$name"
  done
done >"$faults"

cat "$faults"
[ ! -s "$faults" ] || exit 1
echo "the links and names of $(printf '%s\n' "$pages" | wc -l) pages resolve"
