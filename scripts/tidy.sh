#!/usr/bin/env bash
# Runs clang-tidy over the product's sources with the checks of .clang-tidy. Usage: scripts/tidy.sh [FILE...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

tidy=$(command -v clang-tidy-14 || command -v clang-tidy) || {
    echo "clang-tidy is not installed: apt-get install clang-tidy" >&2
    exit 1
}
[ -f build/compile_commands.json ] || cmake --preset release >/dev/null

if [ $# -gt 0 ]; then
    files=("$@")
else
    mapfile -t files < <(git ls-files 'core/*.cpp' 'frame/*.cpp' 'online/*.cpp' 'analysis/*.cpp' 'toolkit/*.cpp' 'presets/*.cpp' 'views/*.cpp' 'tools/*.cpp' 'plugin/*.cpp' 'hosts/*.cpp')
fi
# clang does not know one option that g++ gets; everything else is as it is compiled.
mkdir -p build/tidy
sed 's/-fno-gnu-unique//g' build/compile_commands.json >build/tidy/compile_commands.json
printf '%s\n' "${files[@]}" | xargs -P "${TIDY_JOBS:-$(nproc)}" -n 4 "$tidy" -p build/tidy --quiet
