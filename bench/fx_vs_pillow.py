#!/usr/bin/python3
"""The effects library against Pillow on the same 4000 x 3000 picture size.

Times Pillow's nearest equivalent of each operation (best of several runs), then runs
bench_fx (one run, its own plain-copy yardstick included) and prints one row per
operation: our time, Pillow's, and the ratio. Rotate, zoom and render must stay within
twice Pillow's nearest-neighbour rotation; every row should show us faster. Then the
Image menu's rotation (RotatePicture through the command, its undo step included, from
bench_canvas) against Pillow's bilinear rotation of the same picture: it must not take
longer.

    bench/fx_vs_pillow.py [path/to/bench_fx [path/to/bench_canvas]]

Debian's python3-pil is for the system interpreter, hence /usr/bin/python3.
"""

import json
import math
import os
import subprocess
import sys
import tempfile
import time

from PIL import Image, ImageEnhance, ImageFilter, ImageOps

WIDTH, HEIGHT = 4000, 3000


def picture():
    # Gradients with noise, like the benchmark's picture.
    r = Image.linear_gradient("L").resize((WIDTH, HEIGHT))
    g = Image.effect_noise((WIDTH, HEIGHT), 64)
    b = Image.linear_gradient("L").rotate(90).resize((WIDTH, HEIGHT))
    return Image.merge("RGB", (r, g, b))


def best_ms(fn, runs=5):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        fn()
        times.append(time.perf_counter() - start)
    return min(times) * 1000


def hue_round_trip(im):
    h, s, v = im.convert("HSV").split()
    h = h.point(lambda x: (x + 42) % 256)
    return Image.merge("HSV", (h, s, v)).convert("RGB")


def pillow_times():
    im = picture()
    lut = [min(255, i + 40) for i in range(256)] * 3
    blur = ImageFilter.Kernel((3, 3), [1, 2, 1, 2, 4, 2, 1, 2, 1], 16)
    return {
        "greyscale": best_ms(lambda: im.convert("L")),
        "invert": best_ms(lambda: ImageOps.invert(im)),
        "point LUT": best_ms(lambda: im.point(lut)),
        "3x3 kernel": best_ms(lambda: im.filter(blur)),
        "box-reduce mosaic": best_ms(lambda: im.reduce(5).resize(im.size, Image.NEAREST)),
        "HSV round trip": best_ms(lambda: hue_round_trip(im), runs=3),
        "colour enhance": best_ms(lambda: ImageEnhance.Color(im).enhance(0.35)),
        "nearest rotation": best_ms(lambda: im.rotate(30, resample=Image.NEAREST)),
        # The menu turns by 3.14 radians and its quarters, not by exact right angles, so
        # Pillow turns by the same: at exactly 180 it would only transpose the rows.
        "bilinear rotation 45": best_ms(lambda: im.rotate(math.degrees(3.14 / 4), resample=Image.BILINEAR)),
        "bilinear rotation 90": best_ms(lambda: im.rotate(math.degrees(3.14 / 2), resample=Image.BILINEAR)),
        "bilinear rotation 180": best_ms(lambda: im.rotate(math.degrees(3.14), resample=Image.BILINEAR)),
    }


# Our operation -> Pillow's nearest equivalent.
PAIRS = [
    ("greyscale", "greyscale"),
    ("invert", "invert"),
    ("brightness", "point LUT"),
    ("gamma", "point LUT"),
    ("inversion", "point LUT"),
    ("ambientlight", "point LUT"),
    ("reducecolors", "point LUT"),
    ("saturation", "colour enhance"),
    ("tone", "colour enhance"),
    ("blur", "3x3 kernel"),
    ("emboss", "3x3 kernel"),
    ("engrave", "3x3 kernel"),
    ("relief", "3x3 kernel"),
    ("antialias", "3x3 kernel"),
    ("mosaic", "box-reduce mosaic"),
    ("hue", "HSV round trip"),
    ("rotate", "nearest rotation"),
    ("zoom", "nearest rotation"),
    ("render", "nearest rotation"),
]


def our_times(binary, pattern="BM_[a-zC]"):
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "fx.json")
        subprocess.run(
            [binary, "--benchmark_filter=" + pattern, "--benchmark_min_time=0.3",
             "--benchmark_out=" + out, "--benchmark_out_format=json"],
            check=True, stdout=subprocess.DEVNULL)
        with open(out) as f:
            runs = json.load(f)["benchmarks"]
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    return {r["name"].split("/")[0][3:]: r["real_time"] * scale[r["time_unit"]] for r in runs}


def main():
    built = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "build", "bench")
    binary = sys.argv[1] if len(sys.argv) > 1 else os.path.join(built, "bench_fx")
    canvas = sys.argv[2] if len(sys.argv) > 2 else os.path.join(built, "bench_canvas")
    pillow = pillow_times()
    ours = our_times(binary)
    copy = ours["Copy"]
    print(f"{WIDTH} x {HEIGHT}; one plain copy of the picture here: {copy:.1f} ms "
          f"(Pillow works on 3 bytes a pixel, we on 4)")
    print(f"{'operation':14} {'ms':>8} {'copies':>7}   {'Pillow equivalent':18} {'ms':>8} {'ours/Pillow':>11}")
    slower = 0
    for name, equivalent in PAIRS:
        ratio = ours[name] / pillow[equivalent]
        mark = "" if ratio < 1 else "  slower"
        slower += ratio >= 1
        print(f"{name:14} {ours[name]:8.1f} {ours[name] / copy:7.2f}   {equivalent:18} "
              f"{pillow[equivalent]:8.1f} {ratio:11.2f}{mark}")
    rotation = pillow["nearest rotation"]
    for name in ("rotate", "zoom", "render"):
        verdict = "ok" if ours[name] <= 2 * rotation else "OVER"
        print(f"{name} within 2 x Pillow's rotation: {ours[name]:.1f} <= {2 * rotation:.1f} ms {verdict}")
    if os.path.exists(canvas):
        turns = our_times(canvas, "BM_Rotate|BM_Copy")
        print(f"\nImage > Rotate (the command with its undo step) against Pillow's bilinear rotation:")
        for degrees in (45, 90, 180):
            mine, theirs = turns[f"Rotate{degrees}"], pillow[f"bilinear rotation {degrees}"]
            slower += mine > theirs
            verdict = "ok" if mine <= theirs else "OVER"
            print(f"rotate {degrees:3}     {mine:8.1f} ms   Pillow {theirs:8.1f} ms   ratio {mine / theirs:5.2f} {verdict}")
    return 1 if slower else 0


if __name__ == "__main__":
    sys.exit(main())
