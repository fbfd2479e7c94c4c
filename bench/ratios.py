#!/usr/bin/env python3
"""Tabulates yuvblit_bench results against a peer and the copy roofline.

    yuvblit_bench --benchmark_repetitions=3 \\
        --benchmark_out=bench.json --benchmark_out_format=json
    bench/ratios.py bench.json --ref libyuv_I420ToYUY2

For every entry <name>/<W>x<H> it prints pixels/s, the ratio to the
reference entry at the same size (entry speed / reference speed) and the
ratio to roofline_copy/<label>/<W>x<H>, where <label> is the output format
the entry is labelled with. With repetitions the median is used. Rows are
sorted by entry name, then picture size.
"""
import argparse
import json
import sys


def load(path):
    with open(path) as f:
        data = json.load(f)
    runs = {}
    medians = {}
    for b in data["benchmarks"]:
        name = b.get("run_name", b["name"])
        if b.get("run_type") == "aggregate":
            if b.get("aggregate_name") == "median":
                medians[name] = b
        else:
            runs.setdefault(name, b)
    runs.update(medians)
    return runs


def split(name):
    base, _, size = name.rpartition("/")
    return base, size


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("json")
    ap.add_argument("--ref", default="libyuv_I420ToYUY2",
                    help="entry (without /WxH) the ratio column divides by")
    args = ap.parse_args()

    runs = load(args.json)
    print("| entry | size | Mpixels/s | vs %s | vs copy roofline |" % args.ref)
    print("|---|---|---:|---:|---:|")
    def order(name):
        base, size = split(name)
        w, _, h = size.partition("x")
        pixels = int(w) * int(h) if w.isdigit() and h.isdigit() else 0
        return (base, pixels)

    for name in sorted(runs, key=order):
        b = runs[name]
        base, size = split(name)
        if base.startswith("roofline_copy/"):
            continue
        rate = b.get("pixels/s")
        if rate is None:
            continue
        ref = runs.get("%s/%s" % (args.ref, size))
        roof = runs.get("roofline_copy/%s/%s" % (b.get("label", ""), size))
        ref_ratio = "%.2f" % (rate / ref["pixels/s"]) if ref else "-"
        roof_ratio = "%.2f" % (rate / roof["pixels/s"]) if roof else "-"
        print("| %s | %s | %.0f | %s | %s |" %
              (base, size, rate / 1e6, ref_ratio, roof_ratio))
    return 0


if __name__ == "__main__":
    sys.exit(main())
