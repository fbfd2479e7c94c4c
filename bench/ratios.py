#!/usr/bin/env python3
"""Tabulates yuvblit_bench results against a peer and the copy roofline.

    yuvblit_bench --benchmark_repetitions=3 \\
        --benchmark_out=bench.json --benchmark_out_format=json
    bench/ratios.py bench.json --ref libyuv_I420ToYUY2

Every entry is measured in two buffer placements, <name>/<W>x<H>/staggered
(each buffer at its own offset within a page) and <name>/<W>x<H>/page
(every buffer and plane on a page, as hosts usually allocate). For every
entry and size it prints, per placement, pixels/s, the ratio to the
reference entry at the same size and placement (entry speed / reference
speed) and the ratio to roofline_copy/<label>/<W>x<H> in that placement,
where <label> is the output format the entry is labelled with (up to a ';';
what follows is a note, shown after the entry's name); then what the page
placement costs: its time over the staggered time, minus one. With
repetitions the median is used; --fastest takes each entry's fastest
repetition instead, which on a shared or virtual machine, where other work
only ever adds time, moves far less from run to run. Rows are sorted by entry name, then picture
size. Entries named without a placement are shown as staggered.

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


def load(path, fastest=False):
    with open(path) as f:
        data = json.load(f)
    runs = {}
    medians = {}
    for b in data["benchmarks"]:
        name = b.get("run_name", b["name"])
        if b.get("run_type") == "aggregate":
            if b.get("aggregate_name") == "median":
                medians[name] = b
        elif fastest:
            if name not in runs or b["real_time"] < runs[name]["real_time"]:
                runs[name] = b
        else:
            runs.setdefault(name, b)
    if not fastest:
        runs.update(medians)
    return runs


PLACEMENTS = ("staggered", "page")


def split(name):
    """(base, size, placement) of <base>/<W>x<H>[/<placement>]."""
    head, _, last = name.rpartition("/")
    placement = "staggered"
    if last in PLACEMENTS:
        placement = last
        head, _, last = head.rpartition("/")
    return head, last, placement


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
    ap.add_argument("--fastest", action="store_true",
                    help="use each entry's fastest repetition, not the median "
                         "(needs the repetitions in the JSON: no "
                         "--benchmark_report_aggregates_only)")
    args = ap.parse_args()

    def peer_of(base):
        for pattern, peer in args.peer:
            if fnmatch.fnmatchcase(base, pattern):
                return peer_for(pattern, peer, base)
        return args.ref

    runs = [load(path, args.fastest) for path in args.json]
    peer_head = " peer |" if args.peer else ""
    ref_head = "vs peer" if args.peer else "vs %s" % args.ref
    cols = []
    for p in PLACEMENTS:
        cols += ["%s Mpixels/s" % p, "%s %s" % (p, ref_head), "%s vs copy roofline" % p]
    print("| entry | size |%s %s | page cost |" % (peer_head, " | ".join(cols)))
    print("|---|---|%s%s---:|" % ("---|" if args.peer else "", "---:|" * len(cols)))

    def order(key):
        base, size = key
        w, _, h = size.partition("x")
        pixels = int(w) * int(h) if w.isdigit() and h.isdigit() else 0
        return (base, pixels)

    def median_or_none(values):
        values = [v for v in values if v is not None]
        return statistics.median(values) if values else None

    def fmt(v, pattern="%.2f"):
        return pattern % v if v is not None else "-"

    keys = set()
    for r in runs:
        for name in r:
            base, size, _ = split(name)
            keys.add((base, size))

    def entry(r, base, size, placement):
        b = r.get("%s/%s/%s" % (base, size, placement))
        if b is None and placement == "staggered":
            b = r.get("%s/%s" % (base, size))
        return b if b is not None and b.get("pixels/s") is not None else None

    for base, size in sorted(keys, key=order):
        if base.startswith("roofline_copy/"):
            continue
        if args.only and not any(fnmatch.fnmatchcase(base, p) for p in args.only):
            continue
        peer = peer_of(base)
        cells, label, found, costs = [], "", False, []
        for placement in PLACEMENTS:
            rates, ref_ratios, roof_ratios = [], [], []
            for r in runs:
                b = entry(r, base, size, placement)
                if b is None:
                    continue
                rate = b["pixels/s"]
                label = b.get("label", "")
                fmt_name = label.partition(";")[0].strip()
                ref = entry(r, peer, size, placement)
                roof = entry(r, "roofline_copy/" + fmt_name, size, placement)
                rates.append(rate)
                ref_ratios.append(rate / ref["pixels/s"] if ref else None)
                roof_ratios.append(rate / roof["pixels/s"] if roof else None)
            if rates:
                found = True
            rate = statistics.median(rates) if rates else None
            cells += [fmt(rate / 1e6 if rate else None, "%.0f"), fmt(median_or_none(ref_ratios)),
                      fmt(median_or_none(roof_ratios))]
        for r in runs:
            s_, p_ = entry(r, base, size, "staggered"), entry(r, base, size, "page")
            if s_ and p_:
                costs.append(s_["pixels/s"] / p_["pixels/s"] - 1)
        if not found:
            continue
        note = label.partition(";")[2].strip()
        shown = "%s (%s)" % (base, note) if note else base
        cost = median_or_none(costs)
        peer_cell = " %s |" % peer if args.peer else ""
        print("| %s | %s |%s %s | %s |" % (shown, size, peer_cell, " | ".join(cells),
                                            "%+.0f%%" % (100 * cost) if cost is not None else "-"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
