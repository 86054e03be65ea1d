#!/usr/bin/env bash
# Judges table/stem.src on the word families of a spelling dictionary, beside the
# English stemmer of Snowball. Installs both (Debian packages hunspell-en-us and
# libstemmer-dev) when they are missing. Arguments go to StemFamilies:
#
#   bench/stemming/run.sh [-missed N] [-merged N]
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"
set -euo pipefail

packages=()
[[ -f /usr/share/hunspell/en_US.dic ]] || packages+=(hunspell-en-us)
[[ -f /usr/include/libstemmer.h ]] || packages+=(libstemmer-dev)
if ((${#packages[@]} > 0)); then
  as_root=()
  ((EUID == 0)) || as_root=(sudo)
  "${as_root[@]}" apt-get -qq update
  "${as_root[@]}" apt-get -qq install -y --no-install-recommends "${packages[@]}"
fi

cd "$project_dir"
choose_ccache_folder
cmake --preset release >/dev/null
cmake --build --preset release --target StemFamilies vandrelle_tables -j "$jobs" >/dev/null
build/release/bin/StemFamilies build/release/table/stem.tbl /usr/share/hunspell/en_US "$@"
