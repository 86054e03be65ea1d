# Sourced by the other scripts: where the project is, how they speak, and how a
# preset is built. The caller has set -euo pipefail.
# shellcheck shell=bash

project_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export DEBIAN_FRONTEND=noninteractive LC_ALL=C
jobs=$(nproc 2>/dev/null || echo 2)

# A heading, so that a long log can be followed with the eye.
say() { printf '\n== %s\n' "$*"; }

# One line on the error stream, then the end.
fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# ccache refuses to compile when it cannot write to its directory; a folder in
# the build tree takes its place then.
choose_ccache_folder() {
  command -v ccache >/dev/null || return 0
  local folder
  folder=$(ccache --get-config cache_dir 2>/dev/null || true)
  if [[ -z $folder ]] || ! mkdir -p "$folder" 2>/dev/null || ! probe=$(mktemp -p "$folder" probe.XXXXXX 2>/dev/null); then
    export CCACHE_DIR=$project_dir/build/ccache
    mkdir -p "$CCACHE_DIR"
    export CCACHE_TEMPDIR=$CCACHE_DIR/tmp
    echo "ccache cannot write to ${folder:-its folder}; using $CCACHE_DIR"
  else
    rm -f "$probe"
  fi
}

# build PRESET: configures and builds everything of a preset.
build() {
  say "Building, preset $1"
  choose_ccache_folder
  (cd "$project_dir" && cmake --preset "$1" && cmake --build --preset "$1" -j "$jobs")
}
