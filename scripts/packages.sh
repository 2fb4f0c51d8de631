#!/usr/bin/env bash
# Installs the Debian packages that building, testing and comparing need, and says which and why. Silent when
# nothing is missing. Usage: scripts/packages.sh run|test|hosts|peers
set -euo pipefail

# One line per package: name, then the reason.
packages_run() {
    cat <<'LIST'
g++                the compiler
cmake              configures the build
ninja-build        runs the build
pkg-config         finds libsndfile and FFTW
zlib1g-dev         packs the state that hosts store
libfftw3-dev       the Fourier transforms of the spectra
libsndfile1-dev    reads WAV, FLAC, OGG and MP3
nlohmann-json3-dev writes results as JSON
libcli11-dev       reads the command line
librtaudio-dev     plays through the sound card
libjack-jackd2-dev the sound server that it may play to, of the kind that the tests start
libsamplerate0-dev converts where a sound card has another sample rate
libagg-dev         fills and strokes the shapes of the window
libfreetype-dev    the letters of the window
libpng-dev         pictures: the window's own, and those it is asked to write
libxcb1-dev        windows on X11
libxcb-shm0-dev    pixels to the display through shared memory
libxcb-xkb-dev     keys and their modifiers
libxcb-randr0-dev  where its monitors end
libxcb-shape0-dev  round corners of menus where no compositor blends them
libxcb-cursor-dev  the desktop's own mouse cursors
libxkbcommon-dev   what a key means on the user's keyboard
libxkbcommon-x11-dev  the same, asked of the display
libdbus-1-dev      the desktop's file dialogs
juce-modules-source-data  the interface SDK of VST 3; of the package, that folder alone is read
LIST
}

packages_test() {
    packages_run
    cat <<'LIST'
libgtest-dev       the test framework
libgmock-dev       its matchers
libbenchmark-dev   the benchmarks, which are built with the tests
binutils           looks into the plug-in binary
clang              builds the fuzz targets
libclang-rt-14-dev the fuzzer's run-time library
clang-format-14    checks the layout of the source
xvfb               a display to test windows on
xdotool            a user of that display
libxcb-res0-dev    counts what the tests leave on the display
libxcb-xtest0-dev  presses keys and buttons there
jackd2             a sound server that needs no sound card
dbus-daemon        a desktop portal to try file dialogs with
alsa-utils         speech recordings to measure
parsec47-data      a music recording to measure
dpkg-dev           finds out what the Debian package depends on
file               tells it which files to look into
python3-numpy      computes every measure a second time, for comparison
python3-scipy      transforms and filters for that comparison
LIST
}

packages_hosts() {
    packages_run
    cat <<'LIST'
ardour             loads VST2 and VST3, renders without a user
qtractor           loads VST2
jackd2             the sound server that Qtractor plays to, without a sound card
ecasound           plays a tone into it
openbox            the window manager that Qtractor needs
xvfb               a display for both
xdotool            a user of that display
imagemagick        takes pictures of their windows
LIST
}

packages_peers() {
    packages_run
    cat <<'LIST'
lsp-plugins-lv2    spectrum analyser and oscilloscope to compare with
x42-plugins        meters, spectra, goniometer and scope to compare with
liblilv-dev        finds and loads LV2 plug-ins
lv2-dev            the LV2 interface
libbenchmark-dev   the other benchmarks, which are configured with it
LIST
}

case "${1:-}" in
run) list=$(packages_run) ;;
test) list=$(packages_test) ;;
hosts) list=$(packages_hosts) ;;
peers) list=$(packages_peers) ;;
*)
    echo "usage: scripts/packages.sh run|test|hosts|peers" >&2
    exit 2
    ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is no Debian system: please install these yourself, if they are missing:" >&2
    echo "$list" >&2
    exit 0 # the build tells what it does not find
fi

# One question for all packages: a start must not wait for it.
mapfile -t names < <(awk '{ print $1 }' <<<"$list")
installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "${names[@]}" 2>/dev/null |
    awk '$2 == "installed" { print $1 }' || true)
missing=()
for name in "${names[@]}"; do
    grep -qxF -- "$name" <<<"$installed" || missing+=("$name")
done
[ "${#missing[@]}" -eq 0 ] && exit 0

echo "Installing with apt-get:" >&2
for name in "${missing[@]}"; do
    awk -v name="$name" '$1 == name { print "  " $0 }' <<<"$list" >&2
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
install_missing() { apt update && apt install -y --no-install-recommends "${missing[@]}"; }

# Mirrors hiccup: one more try.
if ! install_missing; then
    echo "That failed; once more." >&2
    sleep 3
    if ! install_missing; then
        tail -n 20 "$log" >&2
        echo "Could not install ${missing[*]}; the last lines above say why." >&2
        exit 1
    fi
fi
