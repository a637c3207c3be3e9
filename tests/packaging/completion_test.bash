#!/bin/bash
# completion_test.bash PROJECT FOLDER...: what bash offers behind a line that was begun. The folders hold the tools, whose
# help is asked, and erblb, which the completions ask for the entries of containers.
set -u
project=$1
shift
for folder in "$@"; do PATH=$folder:$PATH; done
functions=/usr/share/bash-completion/bash_completion
[[ -r $functions ]] || { echo 'there is no bash-completion'; exit 77; }
shopt -s extglob progcomp
unset BASH_COMPLETION_VERSINFO
source "$functions"
for name in ei4convert ei4info ei4make erblb; do source "$project/completions/$name" || exit 1; done
compopt() { :; } # it works within readline only

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/archive" "$work/out" "$work/two words"
touch "$work"/{a.ei4,b.ei4,c.raw,d.jpg,e.erblb,f.txt} "$work/two words/g.ei4"
cp "$project"/samples/archive/*.erblb "$work/archive"
cd "$work" || exit 1

# after LINE: sets `offered` to what is offered, sorted, between blanks. The words are those that readline makes of it.
after() {
    COMP_LINE=$1
    COMP_POINT=${#COMP_LINE}
    local spaced=${COMP_LINE//=/ = }
    read -ra COMP_WORDS <<<"$spaced"
    [[ $COMP_LINE == *' ' ]] && COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_TYPE=9 COMP_KEY=9
    COMPREPLY=()
    "_${COMP_WORDS[0]}"
    offered=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | tr '\n' ' ')
    offered=${offered% }
}
faults=0
expect() { # LINE OFFERED
    after "$1"
    [[ $offered == "$2" ]] || {
        printf 'behind "%s": "%s" instead of "%s"\n' "$1" "$offered" "$2" >&2
        ((++faults))
    }
}

# Options are offered that the program has, and all of them. The converter's help leaves most of its own out.
expect_options() { # NAME OPTION...
    local name=$1
    shift
    expect "$name -" "$(printf '%s\n' "$@" | LC_ALL=C sort -u | tr '\n' ' ' | command sed 's/ $//')"
}
stated() { "$1" --help | tr -cs 'A-Za-z0-9-' '\n' | command grep -E '^--?[A-Za-z][A-Za-z-]*$' | command grep -vxE -e '-geom|-blob'; }
expect_options ei4convert $(command grep -oE 'is\("-[a-z]+"\)' "$project/src/driver/options.cpp" | command sed 's/is("//; s/")//')
for name in ei4info ei4make erblb; do expect_options $name $(stated $name); done

expect 'ei4convert -in' '-in -incolor -intercept -invert'
expect 'ei4convert -incolor ' 'M08 M16 RGB'
expect 'ei4convert -in a.ei4 -outcolor M' 'M08 M16'
expect 'ei4convert -in ' 'a.ei4 archive b.ei4 c.raw out two words'
expect 'ei4convert -in b' 'b.ei4'
expect 'ei4convert -ima f' 'f.txt'
expect 'ei4convert -in a.ei4 -out d' 'd.jpg'
expect 'ei4convert -geom 128' '128x128'
expect 'ei4convert -window ' ''
expect 'ei4convert -in a.ei4 -jpg' '-jpgquality'
expect 'ei4convert -blob -in archive/' 'archive/mr.ei4 archive/radiograph.ei4'
expect 'ei4convert -blob -in archive/m' 'archive/mr.ei4'
expect 'ei4convert -blob -in ./archive/r' './archive/radiograph.ei4'
expect 'ei4convert -blob -in ar' 'archive'

expect 'ei4info ' 'a.ei4 archive b.ei4 out two words'
expect 'ei4info --j' '--json'
expect 'ei4info --blob ar' 'archive'

expect 'ei4make --format ' 'M08 M16 RGB'
expect 'ei4make --format=M' 'M08 M16'
expect 'ei4make --magic GW4' 'GW40 GW41'
expect 'ei4make --l' '--level --levels --lowest-bit'
expect 'ei4make c' 'c.raw'
expect 'ei4make --levels 3 c.raw ' 'a.ei4 archive b.ei4 out two words'
expect 'ei4make c.raw a.ei4 ' ''

expect 'erblb ' 'append build delete extract list verify'
expect 'erblb l' 'list'
expect 'erblb list ' 'archive e.erblb out two words'
expect 'erblb list --a' '--all'
expect 'erblb extract --a' ''
expect 'erblb verify -' '--help --images --no-progress --version -h -i'
expect 'erblb extract archive/full.erblb ' 'mr.ei4 radiograph.f.ei4'
expect 'erblb extract -C out archive/full.erblb m' 'mr.ei4'
expect 'erblb delete archive/initial.erblb ' 'radiograph.t.ei4'
expect 'erblb extract -C ' 'archive out two words'
expect 'erblb build e.erblb a' 'a.ei4 archive'
expect 'erblb build e.erblb x=b' 'b.ei4'
expect 'erblb append e.erblb f' 'f.txt'
exit $((faults > 0))
