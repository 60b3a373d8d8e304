"""Images of 8 bits per channel in memory and as PNG files, without any library beyond zlib."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
RGB = 2
RGBA = 6
CHANNELS = {RGB: 3, RGBA: 4}


class PngError(Exception):
    pass


class Image:
    """`pixels` has rows of red, green, blue and alpha, not premultiplied."""

    def __init__(self, width, height, pixels=None, colour_type=RGBA):
        self.width = width
        self.height = height
        self.colour_type = colour_type
        self.pixels = pixels if pixels is not None else bytearray(4 * width * height)

    def at(self, x, y):
        offset = 4 * (y * self.width + x)
        return tuple(self.pixels[offset:offset + 4])

    def put(self, x, y, pixel):
        offset = 4 * (y * self.width + x)
        self.pixels[offset:offset + 4] = bytes(pixel)


def _paeth(left, up, corner):
    to_left, to_up, to_corner = abs(up - corner), abs(left - corner), abs(left + up - 2 * corner)
    if to_left <= to_up and to_left <= to_corner:
        return left
    return up if to_up <= to_corner else corner


# By the number of the filter.
_PREDICTORS = (
    lambda left, up, corner: 0,
    lambda left, up, corner: left,
    lambda left, up, corner: up,
    lambda left, up, corner: (left + up) // 2,
    _paeth,
)


def _filtered(kind, row, previous, step):
    predictor = _PREDICTORS[kind]
    out = bytearray(len(row))
    for i, value in enumerate(row):
        left = row[i - step] if i >= step else 0
        corner = previous[i - step] if i >= step else 0
        out[i] = (value - predictor(left, previous[i], corner)) & 255
    return out


def _unfiltered(kind, row, previous, step):
    out = bytearray(row)
    if kind:
        predictor = _PREDICTORS[kind]
        for i in range(len(out)):
            left = out[i - step] if i >= step else 0
            corner = previous[i - step] if i >= step else 0
            out[i] = (out[i] + predictor(left, previous[i], corner)) & 255
    return out


def read(path):
    with open(path, "rb") as file:
        return decode(file.read())


def decode(data):
    if data[:8] != SIGNATURE:
        raise PngError("not a PNG file")
    offset, packed, header = 8, b"", None
    while offset + 8 <= len(data):
        length, kind = struct.unpack(">I4s", data[offset:offset + 8])
        body = data[offset + 8:offset + 8 + length]
        offset += 12 + length
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
    if header is None:
        raise PngError("no header")
    width, height, depth, colour_type, _, _, interlaced = header
    if depth != 8 or colour_type not in CHANNELS or interlaced:
        raise PngError("not a plain image of 8 bits per channel in colour")
    try:
        raw = zlib.decompress(packed)
    except zlib.error as error:
        raise PngError(str(error)) from None
    step = CHANNELS[colour_type]
    stride = width * step
    if len(raw) != height * (stride + 1):
        raise PngError("cut short")

    pixels = bytearray()
    previous = bytes(stride)
    for y in range(height):
        start = y * (stride + 1)
        if raw[start] > 4:
            raise PngError("unknown row filter")
        previous = _unfiltered(raw[start], raw[start + 1:start + 1 + stride], previous, step)
        if colour_type == RGBA:
            pixels += previous
        else:
            for x in range(0, stride, 3):
                pixels += previous[x:x + 3] + b"\xff"
    return Image(width, height, pixels, colour_type)


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def encode(image, filters=range(5)):
    """The file's bytes. A single filter makes a larger file much sooner."""
    step = CHANNELS[image.colour_type]
    rows = bytearray()
    previous = bytes(step * image.width)
    for y in range(image.height):
        row = image.pixels[4 * image.width * y:4 * image.width * (y + 1)]
        if step == 3:
            row = bytearray(value for i, value in enumerate(row) if i % 4 != 3)
        # The usual guess at the best filter: the smallest sum of differences taken as signed.
        kind, best = min(((kind, _filtered(kind, row, previous, step)) for kind in filters),
                         key=lambda entry: sum(min(v, 256 - v) for v in entry[1]))
        rows += bytes([kind]) + best
        previous = row
    header = struct.pack(">IIBBBBB", image.width, image.height, 8, image.colour_type, 0, 0, 0)
    return (SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(bytes(rows), 9))
            + _chunk(b"IEND", b""))


def write(image, path):
    with open(path, "wb") as file:
        file.write(encode(image))
