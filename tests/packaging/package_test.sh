#!/usr/bin/env bash
# Makes the Debian package, installs it into an empty root, uses it there, and removes it again.
# Usage: package_test.sh BUILD-FOLDER VERSION
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
. "$here/check.sh"
build=$1 version=$2

command -v dpkg-shlibdeps >/dev/null || {
    echo "skipped: no dpkg-shlibdeps here"
    exit 77
}
(cd "$build" && cpack -G DEB -B "$work/packages") >"$work/log" 2>&1 || fail "$(cat "$work/log")"
package=$(echo "$work"/packages/orvel-scope_*.deb)
[ -f "$package" ] || fail "no package"

# --- what it says -------------------------------------------------------------------------------
same version "$version" "$(dpkg-deb -f "$package" Version)"
needs=$(dpkg-deb -f "$package" Depends)
for library in libc6 libfreetype6 libxcb1 libsndfile1; do
    [[ $needs == *"$library"* ]] || fail "Depends has no $library: $needs"
done
dpkg-deb -c "$package" | awk '$2 != "root/root" { exit 1 }' || fail "files that are not root's"

# --- installed ----------------------------------------------------------------------------------
root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root/var/lib/dpkg/status"
export PATH=$PATH:/usr/sbin:/sbin
as_root=()
how=dpkg
if [ "$(id -u)" -ne 0 ]; then
    if command -v fakeroot >/dev/null; then as_root=(fakeroot); else how=unpacked; fi
fi
# The libraries it needs are the machine's, not the root's.
in_root() {
    "${as_root[@]}" dpkg --root="$root" --force-not-root --force-depends --log=/dev/null "$@" \
        >"$work/log" 2>&1 || fail "dpkg $*: $(cat "$work/log")"
}
if [ "$how" = dpkg ]; then in_root -i "$package"; else dpkg-deb -x "$package" "$root"; fi

# --- used ---------------------------------------------------------------------------------------
program=$root/usr/bin/orvelscope
export HOME=$work/home XDG_CONFIG_HOME=$work/home/config XDG_DATA_HOME=$work/home/data
mkdir -p "$HOME"
same "what --version prints" "Orvel Scope $version" "$("$program" --version)"
"$program" measure --demo >"$work/levels" || fail "the program does not measure"
grep -q 'Dynamic range' "$work/levels" || fail "no levels: $(cat "$work/levels")"
"$program" render --demo --at 1 -o "$work/scope.png" >/dev/null || fail "the program does not draw"
same "the picture's first bytes" PNG "$(dd if="$work/scope.png" bs=1 skip=1 count=3 2>/dev/null)"
loads "$root/usr/lib/vst/OrvelScope.so" VSTPluginMain
for module in "$root"/usr/lib/vst3/OrvelScope.vst3/Contents/*-linux/OrvelScope.so; do
    [ ! -e "$module" ] || loads "$module" GetPluginFactory
done
for file in copyright LICENSE LICENSE.fonts CHANGELOG.md; do
    [ -s "$root/usr/share/doc/orvel-scope/$file" ] || fail "no $file"
done

# The manual page knows every command, option and parameter that the program knows.
page=$work/page
gzip -dc "$root/usr/share/man/man1/orvelscope.1.gz" | sed 's/\\-/-/g; s/\\f[BRI]//g' >"$page"
for word in $(for command in play render measure; do
    echo "$command"
    "$program" "$command" --help | grep -oE -- '--[a-z]+|^  [A-Z][A-Za-z_]+ ' | sort -u
done); do
    grep -qF -- "$word" "$page" || fail "the manual page does not know $word"
done

# --- removed ------------------------------------------------------------------------------------
[ "$how" = dpkg ] || exit 0 # without dpkg there is no removing to test
in_root --purge orvel-scope
left=$(cd "$root" && find . -path ./var -prune -o ! -name . -print)
same "what is left" "" "$left"
