#!/usr/bin/env python3
"""Writes the seed corpora for the fuzz targets into corpus/y4m and
corpus/png next to this script: small valid files of every kind the readers
accept, and damaged ones that must be refused (truncated headers, huge or
zero sizes, unsupported chroma tags, frame markers in the wrong place,
broken chunks). Run it again after changing it; the files are kept in the
repository so `make fuzz` needs no generation step. Reproducers of fixed
findings are added beside these by hand and are not touched here."""

import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))


def write(reader, name, data):
    folder = os.path.join(HERE, "corpus", reader)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "wb") as f:
        f.write(data)


# ------------------------------------------------------------ YUV4MPEG2

def planes(w, h, seed):
    cw, ch = (w + 1) // 2, (h + 1) // 2
    return bytes((seed * 31 + i * 7) & 255 for i in range(w * h + 2 * cw * ch))


def y4m(w, h, frames=1, tags="", frame_line=b"FRAME\n"):
    head = ("YUV4MPEG2 W%d H%d%s\n" % (w, h, tags)).encode()
    return head + b"".join(frame_line + planes(w, h, n) for n in range(frames))


def y4m_seeds():
    ok = y4m(16, 8, 2, " F25:1 Ip A1:1 C420jpeg XYSCSS=420JPEG")
    seeds = {
        # Read in full.
        "two_frames": ok,
        "odd_size": y4m(5, 3, 3, " F30000:1001 It A10:11"),
        "one_pixel": y4m(1, 1, 1),
        "frame_params": y4m(6, 4, 2, " C420mpeg2", b"FRAME Ib XFOO=1\n"),
        "header_only": b"YUV4MPEG2 W8 H8 C420paldv\n",
        "extra_spaces": b"YUV4MPEG2  W4  H2  I? Zunknown \nFRAME\n" + planes(4, 2, 1),
        "widest": b"YUV4MPEG2 W16384 H1\n",
        # Truncated.
        "empty": b"",
        "signature_only": b"YUV4MPEG2",
        "header_cut": b"YUV4MPEG2 W16 H",
        "frame_line_cut": y4m(4, 2, 1)[:-(12 + 6)] + b"FRA",
        "planes_cut": ok[:-50],
        "no_frames_then_garbage": b"YUV4MPEG2 W2 H2\n\x00\x01",
        # Sizes.
        "zero_width": y4m(0, 8, 0),
        "zero_height": y4m(8, 0, 0),
        "too_wide": y4m(16385, 2, 0),
        "huge": b"YUV4MPEG2 W99999999999 H99999999999\nFRAME\n",
        "huge_tall_cut": b"YUV4MPEG2 W16384 H16384\nFRAME\n" + planes(8, 8, 1),
        "negative": b"YUV4MPEG2 W-16 H16\n",
        "no_height": b"YUV4MPEG2 W16\n",
        "bad_rate": y4m(4, 2, 1, " F30:0"),
        "bad_pixel_ratio": y4m(4, 2, 1, " A1"),
        "bad_interlace": y4m(4, 2, 1, " Ix"),
        # Chroma tags other than 8-bit 4:2:0.
        "c422": y4m(4, 2, 1, " C422"),
        "c444alpha": y4m(4, 2, 1, " C444alpha"),
        "c420p10": y4m(4, 2, 1, " C420p10 XYSCSS=420P10"),
        "cmono": y4m(4, 2, 1, " Cmono"),
        "c_empty": y4m(4, 2, 1, " C"),
        # Frame markers in the wrong place.
        "frame_first": b"FRAME\nYUV4MPEG2 W4 H2\n" + planes(4, 2, 0),
        "no_marker": b"YUV4MPEG2 W4 H2\n" + planes(4, 2, 0),
        "marker_glued": y4m(4, 2, 2, "", b"FRAMEX\n"),
        "marker_lowercase": y4m(4, 2, 1, "", b"frame\n"),
        "marker_crlf": y4m(4, 2, 1, "", b"FRAME\r\n"),
        "marker_long": y4m(4, 2, 1, "", b"FRAME " + b"X" * 1500 + b"\n"),
        "extra_bytes_after_frame": y4m(4, 2, 1) + b"FRAME\n\x00",
        "header_crlf": b"YUV4MPEG2 W4 H2\r\nFRAME\n" + planes(4, 2, 0),
        "header_long": b"YUV4MPEG2 W4 H2 X" + b"a" * 1100 + b"\n",
        "png_signature": b"\x89PNG\r\n\x1a\n\x00\x00\x00\x0dIHDR",
    }
    for name, data in seeds.items():
        write("y4m", name + ".y4m", data)


# ------------------------------------------------------------ PNG

def chunk(kind, body):
    data = kind + body
    return struct.pack(">I", len(body)) + data + struct.pack(">I", zlib.crc32(data))


def filtered(rows, bpp):
    """Rows filtered with each of the five filter types in turn."""
    out, prior = b"", bytes(len(rows[0]))
    for n, row in enumerate(rows):
        kind = n % 5
        line = bytearray()
        for i, x in enumerate(row):
            a = row[i - bpp] if i >= bpp else 0
            b = prior[i]
            c = prior[i - bpp] if i >= bpp else 0
            if kind == 1:
                x -= a
            elif kind == 2:
                x -= b
            elif kind == 3:
                x -= (a + b) // 2
            elif kind == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                x -= a if pa <= pb and pa <= pc else b if pb <= pc else c
            line.append(x & 255)
        out += bytes([kind]) + bytes(line)
        prior = row
    return out


def pack_row(samples, depth):
    """Packs one row of samples of `depth` bits (1..16) into bytes."""
    if depth == 8:
        return bytes(samples)
    if depth == 16:
        return b"".join(struct.pack(">H", s) for s in samples)
    bits, out = "", bytearray()
    for s in samples:
        bits += format(s, "0%db" % depth)
    bits += "0" * (-len(bits) % 8)
    for i in range(0, len(bits), 8):
        out.append(int(bits[i:i + 8], 2))
    return bytes(out)


CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}
ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4),
         (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def png(w, h, colour, depth=8, extra=b"", interlace=0, palette=None, trns=None):
    channels = CHANNELS[colour]
    top = (1 << depth) - 1

    def sample(x, y, c):
        return (x * 37 + y * 101 + c * 59) % (top + 1)

    def image_rows(xs, ys):
        return [pack_row([sample(x, y, c) for x in xs for c in range(channels)], depth)
                for y in ys]

    bpp = max(1, channels * depth // 8)
    if interlace:
        raw = b""
        for x0, y0, dx, dy in ADAM7:
            xs, ys = range(x0, w, dx), range(y0, h, dy)
            if len(xs) and len(ys):
                raw += filtered(image_rows(xs, ys), bpp)
    else:
        raw = filtered(image_rows(range(w), range(h)), bpp)
    out = b"\x89PNG\r\n\x1a\n"
    out += chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, depth, colour, 0, 0, interlace))
    out += extra
    if palette is not None:
        out += chunk(b"PLTE", palette)
    if trns is not None:
        out += chunk(b"tRNS", trns)
    out += chunk(b"IDAT", zlib.compress(raw, 9))
    out += chunk(b"IEND", b"")
    return out


def png_seeds():
    palette = bytes(i * 17 % 256 for i in range(16 * 3))
    rgba = png(8, 6, 6)
    seeds = {
        # Read: every kind with transparency.
        "rgba8": rgba,
        "grey_alpha8": png(7, 5, 4),
        "palette_trns": png(9, 4, 3, 4, palette=palette, trns=bytes(range(0, 256, 32))),
        "palette1_trns": png(13, 3, 3, 1, palette=palette[:6], trns=b"\x00"),
        "grey_trns": png(6, 6, 0, 8, trns=struct.pack(">H", 37)),
        "grey2_trns": png(11, 2, 0, 2, trns=struct.pack(">H", 1)),
        "rgb_trns": png(5, 5, 2, 8, trns=struct.pack(">HHH", 0, 101, 59)),
        "rgba8_interlaced": png(10, 9, 6, interlace=1),
        "rgba8_ancillary": png(4, 4, 6, extra=chunk(b"gAMA", struct.pack(">I", 45455))
                               + chunk(b"sRGB", b"\x00")
                               + chunk(b"tEXt", b"Comment\x00overlay")),
        "frame_sized": png(1920, 1, 6),
        # Refused: no transparency, 16-bit, too large for the frame.
        "rgb8": png(6, 4, 2),
        "palette_no_trns": png(6, 4, 3, 8, palette=palette),
        "grey16": png(4, 4, 0, 16),
        "rgba16": png(4, 3, 6, 16),
        "grey_alpha16": png(3, 3, 4, 16),
        "wider_than_frame": png(1921, 1, 6),
        # Damaged.
        "empty": b"",
        "signature_only": rgba[:8],
        "ihdr_cut": rgba[:20],
        "idat_cut": rgba[:-30],
        "no_iend": rgba[:-12],
        "bad_crc": rgba[:29] + b"\x00\x00\x00\x00" + rgba[33:],
        "huge_ihdr": b"\x89PNG\r\n\x1a\n" + chunk(
            b"IHDR", struct.pack(">IIBBBBB", 100000, 100000, 8, 6, 0, 0, 0)) + rgba[33:],
        "max_ihdr": b"\x89PNG\r\n\x1a\n" + chunk(
            b"IHDR", struct.pack(">IIBBBBB", 0x7FFFFFFF, 1, 8, 6, 0, 0, 0)) + rgba[33:],
        "zero_width": b"\x89PNG\r\n\x1a\n" + chunk(
            b"IHDR", struct.pack(">IIBBBBB", 0, 4, 8, 6, 0, 0, 0)) + rgba[33:],
        "bad_depth": b"\x89PNG\r\n\x1a\n" + chunk(
            b"IHDR", struct.pack(">IIBBBBB", 8, 6, 3, 6, 0, 0, 0)) + rgba[33:],
        "palette_missing": png(6, 4, 3, 8, trns=b"\x00"),
        "idat_short": png(8, 6, 6)[:33] + chunk(b"IDAT", zlib.compress(b"\x00" * 10))
                      + chunk(b"IEND", b""),
        "y4m_signature": b"YUV4MPEG2 W4 H2\n",
    }
    for name, data in seeds.items():
        write("png", name + ".png", data)


if __name__ == "__main__":
    y4m_seeds()
    png_seeds()
