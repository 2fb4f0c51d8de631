#!/usr/bin/env bash
# Draws the pictures of the README anew, from a piece of music in a Debian package (noiz2sa-data).
# Usage: scripts/pictures.sh [PROGRAM]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
program=${1:-build/bin/orvelscope}
music=/usr/share/games/noiz2sa/sounds/stg0.ogg
[ -r "$music" ] || {
    echo "needs the Debian package noiz2sa-data: apt-get install --no-install-recommends noiz2sa-data" >&2
    exit 1
}
out=docs/pictures
mkdir -p "$out"
"$program" render "$music" --page scope --at 31 --tempo 140 -o "$out/scope.png" \
    --set ScopeSyncMode=2 ScopeSyncDuration_BeatTime=3 ScopeVisibleTime_Multiplier=8 \
    ScopeTransientDetection=1
"$program" render "$music" --page spectrum --at 31 --mouse 560,230 -o "$out/spectrum.png" \
    --set SpectrumProjectorFrequency=0.4
"$program" render "$music" --page spectrum --at 31 -o "$out/waterfall.png" --set SpectrumDrawWaterfall=1
"$program" render "$music" --page stereo --at 31 -o "$out/stereo.png" --set GlobalMeteringMode=1
"$program" render "$music" --page system --at 1 -o "$out/system.png"
echo "pictures are in $out"
