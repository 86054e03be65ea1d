#!/usr/bin/env bash
# Installs the Debian packages that the build needs and that are missing. Says
# nothing and takes no time when all are there. Works as root or through sudo.
set -euo pipefail

packages=(g++ cmake ninja-build ccache libgtest-dev libbenchmark-dev libre2-dev
  libdb5.3-dev nlohmann-json3-dev clang-format time)

installed() {
  [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

missing=()
for package in "${packages[@]}"; do
  installed "$package" || missing+=("$package")
done
((${#missing[@]} > 0)) || exit 0

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || {
    echo "Packages are missing (${missing[*]}): run this as root, or install sudo." >&2
    exit 1
  }
  as_root=(sudo)
fi

echo "Installing ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    echo "apt-get $1 failed; install by hand: ${missing[*]}" >&2
    exit 1
  }
}
apt_get update
apt_get install -y --no-install-recommends "${missing[@]}"
