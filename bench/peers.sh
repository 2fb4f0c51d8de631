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

# One line per package: name, then the reason.
peers() {
    cat <<'LIST'
lsp-plugins-lv2  spectrum analyser and oscilloscope to compare with
x42-plugins      meters, spectra, goniometer and scope to compare with
liblilv-dev      finds and loads LV2 plug-ins
lv2-dev          the LV2 interface
libbenchmark-dev the other benchmarks, which are configured with it
LIST
}

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This needs a Debian system: the comparison is with the packages of its release." >&2
    exit 1
fi

version_of() { dpkg-query -W -f='${db:Status-Status} ${Version}' "$1" 2>/dev/null || true; }

missing=()
for name in $(peers | awk '{ print $1 }'); do
    [[ $(version_of "$name") == installed\ * ]] || missing+=("$name")
done
if [ "${#missing[@]}" -gt 0 ]; then
    echo "Installing with apt-get:" >&2
    for name in "${missing[@]}"; do
        peers | awk -v name="$name" '$1 == name { print "  " $0 }' >&2
    done
    as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "This needs root, and there is no sudo. Please run as root:" >&2
            echo "  apt-get update && apt-get install --no-install-recommends ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    log=$(mktemp)
    trap 'rm -f "$log"' EXIT
    apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q "$@" >>"$log" 2>&1; }
    if ! { apt update && apt install -y --no-install-recommends "${missing[@]}"; }; then
        tail -n 20 "$log" >&2
        echo "Could not install ${missing[*]}; the lines above say why." >&2
        exit 1
    fi
fi

scripts/packages.sh run
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
