#!/usr/bin/python3
"""Compares every measure of the analyser with an independent computation, and makes the page of it.

    tools/accuracy/accuracy.py --program build/bin/orvelscope --write docs/ACCURACY.md
    tools/accuracy/accuracy.py --program build/bin/orvelscope --short

Ends with 1 when a limit is exceeded. Needs python3-numpy and python3-scipy.
"""
import argparse
import os
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # nothing is left beside the sources
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import numpy as np  # noqa: E402

from detection import compare_sibilance, compare_transients  # noqa: E402
from filters import compare_filters  # noqa: E402
from levels import compare_levels  # noqa: E402
from page import markdown, show  # noqa: E402
from program import Program  # noqa: E402
from scope import compare_sync, compare_table  # noqa: E402
from spectrum import compare_spectra  # noqa: E402
from stereo import compare_correlation  # noqa: E402

SEED = 20240229
PARTS = {
    "levels": compare_levels,
    "spectrum": compare_spectra,
    "correlation": compare_correlation,
    "transients": compare_transients,
    "sibilance": compare_sibilance,
    "table": compare_table,
    "sync": compare_sync,
    "filters": compare_filters,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", required=True, help="the program orvelscope, built")
    parser.add_argument("--write", metavar="PAGE", help="write the page to this file")
    parser.add_argument("--short", action="store_true", help="fewer cases, in seconds")
    parser.add_argument("--only", choices=PARTS, nargs="+", help="some of the comparisons")
    options = parser.parse_args()
    if options.write and (options.short or options.only):
        parser.error("--write takes all comparisons, so neither --short nor --only")

    sections = []
    with tempfile.TemporaryDirectory(prefix="orvel-accuracy-") as folder:
        program = Program(options.program, folder)
        for name in options.only or PARTS:
            begin = time.monotonic()
            # Each part has its own noise, whichever parts run before it.
            rng = np.random.default_rng([SEED, *name.encode()])
            found = PARTS[name](program, rng, options.short)
            failed = show(found)
            print(f"     {name}: {time.monotonic() - begin:.1f} s, seed {SEED}", flush=True)
            sections += found
    if options.write:
        command = "tools/accuracy/accuracy.py --program build/bin/orvelscope --write docs/ACCURACY.md"
        with open(options.write, "w", encoding="utf-8") as file:
            file.write(markdown(sections, command, program.runs))
    failed = [row for section in sections for row in section.rows if not row.passed()]
    print(f"{len(failed)} rows exceed their limit" if failed else "all within their limits")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
