#!/usr/bin/env bash
# Installs what is missing, builds the release preset, indexes the web site in
# examples/site and a feed of examples/feeds, shows what came out and asks the
# indexes. They lie in out/demo/ afterwards, for further looking with
# build/release/bin/vandrelleDump and vandrelleSearch.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

"$project_dir/scripts/setup.sh"
build release

cd "$project_dir"
programs=build/release/bin
root=out/demo/site
rm -rf out/demo
mkdir -p out/demo

options=(-html -fsum -stem build/release/table/stem.tbl -stop build/release/table/stop)

say "Indexing examples/site"
echo "$programs/vandrelleIndex -R $root ${options[*]} examples/site"
# A failed run says so on its standard output and still ends with status 0.
index() {
  local said
  said=$("$programs/vandrelleIndex" -R "$1" "${options[@]}" "${@:2}")
  [[ -z $said ]] || printf '%s\n' "$said"
  [[ $said != *VANDRELLEERROR* ]] || fail "indexing ${*:2} failed"
}
index "$root" examples/site
grep -q '^Indexing Completed' "$root.log" || fail "$root.log does not end as a finished run does"

say "The closing lines of $root.log"
tail -n 12 "$root.log"

dump() {
  say "vandrelleDump -R $root${*:+ $*}"
  "$programs/vandrelleDump" -R "$root" "$@"
}
dump
dump words clo
dump row bridge
for document in 0 7 21; do dump doc "$document"; done
dump digest 7
dump stem clock

search() {
  say "vandrelleSearch -R $root${*:+ $*}"
  "$programs/vandrelleSearch" -R "$root" -stem build/release/table/stem.tbl \
    -stop build/release/table/stop "$@"
}
search -n 3 repairing clocks
search -n 3 '(and (find bridges over the river) (not (find iron)))'

say "Indexing a feed: MEDLINE records, one of them without an abstract"
feed=(-R out/demo/records -type 7 -fsum -stem build/release/table/stem.tbl
  -stop build/release/table/stop examples/feeds/07-medline.txt)
echo "$programs/vandrelleFeed ${feed[*]}"
"$programs/vandrelleFeed" "${feed[@]}"
root=out/demo/records
search homesick keepers

say "Merging the indexes of two folders"
index out/demo/garden examples/site/garden
index out/demo/library examples/site/library
root=out/demo/both
"$programs/vandrelleMerge" -R "$root" "${options[@]:2}" out/demo/garden out/demo/library
search -n 3 books about old pears
