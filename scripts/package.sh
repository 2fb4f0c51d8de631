#!/usr/bin/env bash
# Makes the Debian package and the archive from a finished build, and says where they are.
# Usage: scripts/package.sh [BUILD-FOLDER]
set -euo pipefail

build=$(cd "${1:-build}" && pwd)
command -v dpkg-shlibdeps >/dev/null || {
    echo "This needs dpkg-shlibdeps: apt-get install --no-install-recommends dpkg-dev file" >&2
    exit 1
}
mkdir -p "$build/packages"
rm -f "$build"/packages/orvel-scope*
log=$build/packages/package.log
(cd "$build" && cpack -B "$build/packages") >"$log" 2>&1 || {
    tail -n 20 "$log" >&2
    echo "Could not make the packages; the lines above say why ($log)." >&2
    exit 1
}
rm -rf "$build/packages/_CPack_Packages"
printf '%s\n' "$build"/packages/orvel-scope*
