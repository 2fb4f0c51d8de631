#!/usr/bin/env bash
# Puts the plug-ins into the folders of a user and takes them away again.
# Usage: plugin_folders_test.sh PLUGIN-FOLDER
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
. "$here/check.sh"
script=$here/../../scripts/plugins.sh

export HOME="$work/a home"
mkdir -p "$HOME/.vst"
echo mine >"$HOME/.vst/Another.so"
echo old >"$HOME/.vst/OrvelScope.so"

"$script" install "$1" >"$work/said"
loads "$HOME/.vst/OrvelScope.so" VSTPluginMain
grep -qF "$HOME/.vst/OrvelScope.so" "$work/said" || fail "does not say where"
if [ -d "$1/vst3/OrvelScope.vst3" ]; then
    diff -r "$1/vst3/OrvelScope.vst3" "$HOME/.vst3/OrvelScope.vst3" || fail "another bundle"
fi
"$script" install "$1" >/dev/null # over itself: no bundle inside a bundle
[ ! -e "$HOME/.vst3/OrvelScope.vst3/OrvelScope.vst3" ] || fail "installed into itself"

"$script" uninstall >"$work/said"
grep -qF "$HOME/.vst/OrvelScope.so" "$work/said" || fail "does not say what is gone"
same "what is left" "$HOME/.vst/Another.so" "$(find "$HOME" ! -type d)"
"$script" uninstall >/dev/null || fail "nothing to remove is no error"
mkdir "$work/empty"
if "$script" install "$work/empty" >/dev/null 2>&1; then fail "installs what is not there"; fi
