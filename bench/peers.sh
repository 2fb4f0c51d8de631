#!/usr/bin/env bash
# What does our analysis cost beside LV2 analysers of others? Installs them, builds the benchmark
# into build/, runs it and prints the table. docs/PEERS.md has the answers.
# Usage: bench/peers.sh [ROUNDS]     rounds of 60 s of audio, 9 unless told
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

rounds=${1:-9}
case $rounds in
--help | -h)
    sed -n '2,4s/^# //p' "$0"
    exit 0
    ;;
'' | *[!0-9]* | 0*)
    echo "usage: bench/peers.sh [ROUNDS]" >&2
    exit 2
    ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This needs a Debian system: the comparison is with the packages of its release." >&2
    exit 1
fi

version_of() { dpkg-query -W -f='${db:Status-Status} ${Version}' "$1" 2>/dev/null || true; }

scripts/packages.sh peers
. scripts/build.sh
if is_configured build -DORVEL_BENCH=ON; then
    configure release # again: lilv may have come since
else
    configure release -DORVEL_BENCH=ON -DORVEL_TESTS=OFF
fi
build release peer_bench

cpu=$(awk -F': *' '/^model name/ { print $2; exit }' /proc/cpuinfo)
echo "$(date +%F), $(nproc) cores of $cpu, load $(cut -d' ' -f1 /proc/loadavg) before the start"
for name in lsp-plugins-lv2 x42-plugins; do
    echo "$name $(version_of "$name" | cut -d' ' -f2)"
done
exec build/bench/peer_bench "$rounds"
