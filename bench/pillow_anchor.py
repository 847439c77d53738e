#!/usr/bin/python3
"""Pillow's side of bench_files: times one file operation per request, in this one
process, so the benchmark can interleave Pillow's times with its own.

Reads lines "operation path" on stdin and answers each with the milliseconds it took,
on the wall clock and on the processor:
    picture P   takes the picture of the PPM file P (untimed)
    save_bmp P  picture.save(P, "BMP")
    open_bmp P  Image.open(P).load()
    gif P       picture.quantize().save(P, "GIF"), Pillow's own way to a GIF

Debian's python3-pil is for the system interpreter, hence /usr/bin/python3.
"""

import sys
import time

from PIL import Image


def main():
    picture = None
    for line in sys.stdin:
        operation, _, path = line.strip().partition(" ")
        start = time.perf_counter()
        cpu = time.process_time()
        if operation == "picture":
            picture = Image.open(path)
            picture.load()
        elif operation == "save_bmp":
            picture.save(path, "BMP")
        elif operation == "open_bmp":
            Image.open(path).load()
        elif operation == "gif":
            picture.quantize().save(path, "GIF")
        else:
            print("unknown operation " + operation, file=sys.stderr)
            return 1
        print("%.3f %.3f" % ((time.perf_counter() - start) * 1000, (time.process_time() - cpu) * 1000),
              flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
