#!/usr/bin/python3
"""Saving and opening through the main window against cjpeg, djpeg and Pillow.

Runs bench_files (which interleaves each of our operations with its anchor in one
run, Pillow through bench/pillow_anchor.py) and prints one row per operation: our
best time, the anchor's, their ratio and the ratio we hold ourselves to.

    bench/compare_files.py [path/to/bench_files]
"""

import json
import subprocess
import sys

ROWS = [
    ("BM_SaveJpeg", "JPEG q90 save", "cjpeg -quality 90", 1.1),
    ("BM_OpenJpeg", "JPEG open", "djpeg", 1.2),
    ("BM_SaveBmp", "BMP save", "Pillow save()", 1.3),
    ("BM_OpenBmp", "BMP open", "Pillow open().load()", 1.3),
    ("BM_SaveGif", "GIF save", "Pillow quantize()+save()", 1.0),
]


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else "build/bench/bench_files"
    output = subprocess.run([program, "--benchmark_format=json"], check=True, stdout=subprocess.PIPE,
                            text=True).stdout
    results = {b["name"].split("/")[0]: b for b in json.loads(output)["benchmarks"]}
    print("4000 x 3000 photo, files on /dev/shm, best of the interleaved rounds;")
    print("wall clock, and processor time (user + system) in brackets")
    print("%-14s %16s  %-26s %16s %13s %6s" % ("operation", "ours ms", "anchor", "anchor ms", "ratio", "limit"))
    failed = 0
    for key, label, anchor, limit in ROWS:
        row = results.get(key, {})
        if "ratio" not in row:
            print("%-14s %16s  %-26s %16s %13s %6.2f  %s" % (label, "-", anchor, "-", "-", limit,
                                                            row.get("label", "not run")))
            failed += 1
            continue
        # The verdict is on the wall clock, or on the processor when the machine is busy
        # enough that the wall clock says more about other work.
        ratio = row["ratio"]
        held = ratio <= limit or row["cpu_ratio"] <= limit
        verdict = ("ok" if ratio <= limit else "ok on the processor only") if held else "OVER"
        failed += not held
        print("%-14s %7.1f (%6.1f)  %-26s %7.1f (%6.1f) %5.2f (%4.2f) %6.2f  %s" % (
            label, row["ours_ms"], row["ours_cpu_ms"], anchor, row["anchor_ms"], row["anchor_cpu_ms"], ratio,
            row["cpu_ratio"], limit, verdict))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
