#!/usr/bin/env python3
"""Tabulates yuvblit_bench results against a peer and the copy roofline.

    yuvblit_bench --benchmark_repetitions=3 \\
        --benchmark_out=bench.json --benchmark_out_format=json
    bench/ratios.py bench.json --ref libyuv_I420ToYUY2

For every entry <name>/<W>x<H> it prints pixels/s, the ratio to the
reference entry at the same size (entry speed / reference speed) and the
ratio to roofline_copy/<label>/<W>x<H>, where <label> is the output format
the entry is labelled with (up to a ';'; what follows is a note, shown after
the entry's name). With repetitions the median is used. Rows are sorted by
entry name, then picture size.

Entries can have peers of their own: each --peer PATTERN=PEER (repeatable;
PATTERN a shell-style wildcard matched against the entry name without
/WxH, the first matching --peer wins) compares matching entries with PEER,
and the table then gets a peer column. Entries no --peer matches use --ref.

    bench/ratios.py bench.json --peer 'loadimage_rgb32*=libyuv_I420ToARGB' \\
        --peer 'LoadYUY2_RGB*=libyuv_YUY2ToARGB'

Entries measured in several variants (<name>/<variant>/<W>x<H>) can have a
peer per variant: a '*' in PEER stands for what the last '*' of PATTERN
matched, so --peer 'mix_ayuy2_rgb32_p_ajust/*=libyuv_I420ToARGB_ARGBBlend/*'
compares .../menu with libyuv_I420ToARGB_ARGBBlend/menu. (PATTERN then
takes only the '*' and '?' wildcards.)

--only PATTERN (repeatable) keeps the entries matching any PATTERN.

Given several JSON files (separate runs of the same entries), it prints the
median over the runs of each run's pixels/s and of each run's ratios, so
that a ratio always divides numbers measured in the same run.
"""
import argparse
import fnmatch
import json
import re
import statistics
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


def parse_peer(text):
    pattern, sep, peer = text.partition("=")
    if not sep or not pattern or not peer:
        raise argparse.ArgumentTypeError("--peer takes PATTERN=PEER")
    return pattern, peer


def peer_for(pattern, peer, base):
    """PEER for an entry matching PATTERN, its '*' filled in from base."""
    if "*" not in peer:
        return peer
    regex = "".join("(.*)" if c == "*" else "." if c == "?" else re.escape(c)
                    for c in pattern)
    m = re.fullmatch(regex, base, re.DOTALL)
    if not m or not m.groups():
        return peer
    return peer.replace("*", m.groups()[-1])


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("json", nargs="+", help="one or more benchmark JSON runs")
    ap.add_argument("--ref", default="libyuv_I420ToYUY2",
                    help="entry (without /WxH) the ratio column divides by")
    ap.add_argument("--peer", action="append", default=[], type=parse_peer,
                    metavar="PATTERN=PEER",
                    help="entries matching PATTERN divide by PEER instead")
    ap.add_argument("--only", action="append", default=[], metavar="PATTERN",
                    help="list only entries matching a PATTERN")
    args = ap.parse_args()

    def peer_of(base):
        for pattern, peer in args.peer:
            if fnmatch.fnmatchcase(base, pattern):
                return peer_for(pattern, peer, base)
        return args.ref

    runs = [load(path) for path in args.json]
    if args.peer:
        print("| entry | size | Mpixels/s | peer | vs peer | vs copy roofline |")
        print("|---|---|---:|---|---:|---:|")
    else:
        print("| entry | size | Mpixels/s | vs %s | vs copy roofline |" % args.ref)
        print("|---|---|---:|---:|---:|")

    def order(name):
        base, size = split(name)
        w, _, h = size.partition("x")
        pixels = int(w) * int(h) if w.isdigit() and h.isdigit() else 0
        return (base, pixels)

    def median_or_none(values):
        values = [v for v in values if v is not None]
        return statistics.median(values) if values else None

    names = set()
    for r in runs:
        names.update(r)
    for name in sorted(names, key=order):
        base, size = split(name)
        if base.startswith("roofline_copy/"):
            continue
        if args.only and not any(fnmatch.fnmatchcase(base, p) for p in args.only):
            continue
        peer = peer_of(base)
        rates, ref_ratios, roof_ratios = [], [], []
        label = None
        for r in runs:
            b = r.get(name)
            if b is None or b.get("pixels/s") is None:
                continue
            rate = b["pixels/s"]
            label = b.get("label", "")
            fmt = label.partition(";")[0].strip()
            ref = r.get("%s/%s" % (peer, size))
            roof = r.get("roofline_copy/%s/%s" % (fmt, size))
            rates.append(rate)
            ref_ratios.append(rate / ref["pixels/s"] if ref and ref.get("pixels/s") else None)
            roof_ratios.append(rate / roof["pixels/s"] if roof and roof.get("pixels/s") else None)
        if not rates:
            continue
        rate = statistics.median(rates)
        ref_ratio = median_or_none(ref_ratios)
        roof_ratio = median_or_none(roof_ratios)
        note = label.partition(";")[2].strip()
        shown = "%s (%s)" % (base, note) if note else base
        ref_text = "%.2f" % ref_ratio if ref_ratio is not None else "-"
        roof_text = "%.2f" % roof_ratio if roof_ratio is not None else "-"
        if args.peer:
            print("| %s | %s | %.0f | %s | %s | %s |" %
                  (shown, size, rate / 1e6, peer if ref_ratio is not None else "-",
                   ref_text, roof_text))
        else:
            print("| %s | %s | %.0f | %s | %s |" %
                  (shown, size, rate / 1e6, ref_text, roof_text))
    return 0


if __name__ == "__main__":
    sys.exit(main())
