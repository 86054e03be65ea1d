#!/usr/bin/env bash
# Times the whole command on folders of pages and says how fast it went.
#
#   scripts/bench.sh FOLDER [more folders]
#
# Environment: RUNS      runs per measurement (3)
#              OPTIONS   options of vandrelleIndex besides -R (-html, and the
#                        stem and stop tables of the build when they are there)
#              PROGRAM   the program to measure (build/release/bin/vandrelleIndex,
#                        built first when not given)
#
# Prints per run the wall time, megabytes of input per second and the peak of
# resident memory, then the best run and the size of the index by file.
# Input counts every regular file under the folders; 1 MB is 1,000,000 bytes.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# > 0)) || fail "name at least one folder of pages"
folders=()
for folder in "$@"; do
  [[ -d $folder ]] || fail "$folder is not a folder"
  folders+=("$(realpath "$folder")")
done
runs=${RUNS:-3}
[[ $runs =~ ^[1-9][0-9]*$ ]] || fail "RUNS must be a number of at least 1, not '$runs'"

program=${PROGRAM:-}
if [[ -z $program ]]; then
  "$project_dir/scripts/setup.sh"
  build release
  program=$project_dir/build/release/bin/vandrelleIndex
fi
[[ -x $program ]] || fail "$program is not a program"
program=$(realpath "$program")
[[ -x /usr/bin/time ]] || fail "/usr/bin/time is missing; install the Debian package time"

tables=$project_dir/build/release/table
if [[ -n ${OPTIONS:-} ]]; then
  read -r -a options <<<"$OPTIONS"
else
  options=(-html)
  [[ -f $tables/stem.tbl ]] && options+=(-stem "$tables/stem.tbl")
  [[ -f $tables/stop.ptr ]] && options+=(-stop "$tables/stop")
fi

out=$project_dir/out/bench
mkdir -p "$out"
read -r files bytes < <(find "${folders[@]}" -type f -printf '%s\n' | awk '{ s += $1 } END { printf "%d %d\n", NR, s }')
((bytes > 0)) || fail "the folders hold no bytes to index"

say "Indexing $files files, $(awk -v b="$bytes" 'BEGIN { printf "%.2f", b / 1e6 }') MB, $runs times"
echo "${program##*/} -R out/bench/index ${options[*]}"
printf '%4s %10s %10s %12s\n' run seconds MB/s 'peak MB'
best=
for ((run = 1; run <= runs; ++run)); do
  rm -rf "$out"/index.*  # a storage that outgrew one file is a folder
  # %e has hundredths only; the clock of the shell is finer.
  start=$EPOCHREALTIME
  /usr/bin/time -f '%M' -o "$out/time" "$program" -R "$out/index" "${options[@]}" "${folders[@]}" >"$out/said"
  end=$EPOCHREALTIME
  if grep -q VANDRELLEERROR "$out/said"; then
    cat "$out/said" >&2
    fail "the run failed"
  fi
  seconds=$(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.3f", b - a }')
  peak=$(tail -n 1 "$out/time")
  awk -v r="$run" -v s="$seconds" -v b="$bytes" -v k="$peak" \
    'BEGIN { printf "%4d %10.3f %10.2f %12.1f\n", r, s, b / 1e6 / s, k * 1024 / 1e6 }'
  best=$(awk -v s="$seconds" -v t="${best:-1e9}" 'BEGIN { print (s < t) ? s : t }')
done
awk -v s="$best" -v b="$bytes" 'BEGIN { printf "best %10.3f %10.2f\n", s, b / 1e6 / s }'
grep -h '^Indexing Completed' "$out/index.log" || true

say "The index"
find "$out" -maxdepth 1 -name 'index.*' -type f -printf '%s %f\n' | sort -k2 |
  awk -v b="$bytes" '{ printf "%12d  %s\n", $1, $2; s += $1 }
       END { printf "%12d  together, %.1f%% of the input\n", s, 100 * s / b }'
