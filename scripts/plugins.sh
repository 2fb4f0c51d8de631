#!/usr/bin/env bash
# Puts the plug-ins where hosts look for them in the user's own folders, or takes them away again.
# Usage: scripts/plugins.sh install|uninstall [FOLDER]   (FOLDER: where they were built)
set -euo pipefail

built=${2:-build/plugins}
# Where each is in FOLDER, and where it goes.
plugins=(
    "vst2/OrvelScope.so|$HOME/.vst/OrvelScope.so"
    "vst3/OrvelScope.vst3|$HOME/.vst3/OrvelScope.vst3"
)

install_plugins() {
    local plugin source target any=no
    for plugin in "${plugins[@]}"; do
        source=$built/${plugin%%|*} target=${plugin##*|}
        [ -e "$source" ] || continue
        mkdir -p "$(dirname "$target")"
        # Beside it first: a host that has the old one open keeps it until it closes it.
        rm -rf "$target.new"
        cp -r "$source" "$target.new"
        rm -rf "$target"
        mv -T "$target.new" "$target"
        echo "Installed $target"
        any=yes
    done
    [ "$any" = yes ] || {
        echo "There is no plug-in in $built: build it first." >&2
        exit 1
    }
}

uninstall_plugins() {
    local plugin target any=no
    for plugin in "${plugins[@]}"; do
        target=${plugin##*|}
        [ -e "$target" ] || [ -L "$target" ] || continue
        rm -rf "$target"
        echo "Removed $target"
        any=yes
    done
    [ "$any" = yes ] || echo "No plug-in of ours is in ~/.vst or ~/.vst3."
}

case "${1:-}" in
install) install_plugins ;;
uninstall) uninstall_plugins ;;
*)
    echo "usage: scripts/plugins.sh install|uninstall [FOLDER]" >&2
    exit 2
    ;;
esac
