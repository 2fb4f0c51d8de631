# Shell functions of the packaging tests. A scratch folder is $work, gone at the end.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# same WHAT EXPECTED ACTUAL
same() { [ "$2" = "$3" ] || fail "$1: expected '$2', found '$3'"; }

# loads MODULE ENTRY: the plug-in file loads, all it needs is there, and it has its entry point.
loads() {
    python3 - "$1" "$2" <<'PYTHON' || fail "$1 does not load"
import ctypes, sys
getattr(ctypes.PyDLL(sys.argv[1], mode=2), sys.argv[2])  # RTLD_NOW
PYTHON
}
