#!/usr/bin/python3
"""Times the window filters of scikit-image and SciPy on planes that quentara_bench wrote.

usage: window_peers.py FOLDER REGEX

Runs each filter whose name (window/PLANE/FILTER/RADIUS/PEER, as the benchmark names its own) matches REGEX, and prints
{"peers": [...], "runs": {NAME: ns per pixel}}. The interpreter is Debian's, which has Debian's modules; a module that is
missing leaves its filters out.
"""
import json
import os
import re
import sys
import time

os.environ["OMP_NUM_THREADS"] = os.environ["OPENBLAS_NUM_THREADS"] = "1"

RADII = (1, 2, 3, 5, 8, 10, 14, 17, 30, 50)


def range_limit(radius):
    return 15 if radius <= 3 else 20 if radius <= 10 else 27 if radius <= 17 else 35


def skimage_peers():
    import numpy
    import skimage
    from skimage.filters import rank
    from skimage.morphology import diamond

    def window(rows, columns):
        return numpy.ones((2 * rows + 1, 2 * columns + 1), numpy.uint8)

    def range_mean(footprint, radius):
        limit = range_limit(radius)
        return lambda plane: rank.mean_bilateral(plane, footprint, s0=limit, s1=limit)

    for r in RADII:
        square = window(r, r)
        yield "median", r, "scikit-image median", lambda plane, w=square: rank.median(plane, w)
        yield "mode", r, "scikit-image modal", lambda plane, w=square: rank.modal(plane, w)
        yield "diamond-median", r, "scikit-image median", lambda plane, w=diamond(r): rank.median(plane, w)
        yield "range-mean", r, "scikit-image mean_bilateral", range_mean(square, r)
        yield "range-mean-column", r, "scikit-image mean_bilateral", range_mean(window(r, 0), r)
        yield "range-mean-row", r, "scikit-image mean_bilateral", range_mean(window(0, r), r)
    yield "scikit-image " + skimage.__version__


def scipy_peers():
    import scipy
    from scipy import ndimage

    for r in RADII:
        side = 2 * r + 1
        yield "max", r, "SciPy maximum_filter", lambda plane, n=side: ndimage.maximum_filter(plane, n)
        yield "min", r, "SciPy minimum_filter", lambda plane, n=side: ndimage.minimum_filter(plane, n)
        yield "box-mean", r, "SciPy uniform_filter", lambda plane, n=side: ndimage.uniform_filter(plane, n)
        if r <= 3:  # seconds a plane above
            yield "median", r, "SciPy median_filter", lambda plane, n=side: ndimage.median_filter(plane, n)
    yield "SciPy " + scipy.__version__


def read_pgm(path):
    import numpy
    with open(path, "rb") as file:
        assert file.readline() == b"P5\n"
        width, height = map(int, file.readline().split())
        assert file.readline() == b"255\n"
        return numpy.fromfile(file, numpy.uint8).reshape(height, width)


def cpu_seconds(call, plane):
    start = time.process_time()
    call(plane)
    return time.process_time() - start


def main():
    folder, chosen = sys.argv[1], re.compile(sys.argv[2])
    peers, filters = [], []
    for listing in (skimage_peers, scipy_peers):
        try:
            *found, version = listing()
        except ImportError:
            continue
        peers.append(version)
        filters += found
    runs = {}
    for name in ("natural", "noisy", "flat") if filters else ():
        plane = read_pgm(f"{folder}/{name}.pgm")
        for filter_name, radius, peer, call in filters:
            path = f"window/{name}/{filter_name}/{radius}/{peer}"
            if not chosen.search(path):
                continue
            seconds = cpu_seconds(call, plane)
            if seconds < 0.1:  # short ones are noisier
                seconds = min(seconds, cpu_seconds(call, plane), cpu_seconds(call, plane))
            runs[path] = seconds * 1e9 / plane.size
    json.dump({"peers": peers, "runs": runs}, sys.stdout)


if __name__ == "__main__":
    main()
