#!/usr/bin/env bash
# Installs what is missing, builds a preset and runs all of its tests.
#
#   scripts/test.sh [release|debug|asan]        (release when none is named)
#
# ctest's summary is the last thing that it prints; the exit status is ctest's.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=${1:-release}
case $preset in
  release | debug | asan) ;;
  *) fail "there is no preset '$preset'; name release, debug or asan" ;;
esac

"$project_dir/scripts/setup.sh"
build "$preset"

say "Testing, preset $preset"
cd "$project_dir"
ctest --preset "$preset" -j "$jobs" --no-tests=error
