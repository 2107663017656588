"""Pictures as the browser takes them: PNG files with eight bits a colour, not interlaced."""
import struct
import zlib


def read_rows(png):
    """The rows of a picture, each as bytes, and the number of bytes of a pixel."""
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    position, content, header = 8, b"", None
    while position < len(png):
        length, kind = struct.unpack_from(">I4s", png, position)
        block = png[position + 8:position + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", block)
        elif kind == b"IDAT":
            content += block
        position += 12 + length
    width, height, depth, colour, _, _, interlaced = header
    assert depth == 8 and not interlaced
    pixel = {2: 3, 6: 4}[colour]
    return list(unfilter(zlib.decompress(content), width * pixel, height, pixel)), pixel


def unfilter(data, length, height, pixel):
    above = bytearray(length)
    for number in range(height):
        start = number * (length + 1)
        kind, row = data[start], bytearray(data[start + 1:start + 1 + length])
        for index in range(length if kind else 0):
            left = row[index - pixel] if index >= pixel else 0
            up = above[index]
            corner = above[index - pixel] if index >= pixel else 0
            row[index] = (row[index] + (0, left, up, (left + up) // 2, paeth(left, up, corner))[kind]) & 0xFF
        yield row
        above = row


def paeth(left, up, corner):
    guess = left + up - corner
    distances = [(abs(guess - value), order, value) for order, value in enumerate((left, up, corner))]
    return min(distances)[2]


def brightness(png):
    """The mean of red, green and blue, from 0 to 255."""
    rows, pixel = read_rows(png)
    values = [value for row in rows for value in row[0::pixel]] + [value for row in rows for value in row[1::pixel]] \
        + [value for row in rows for value in row[2::pixel]]
    return sum(values) / len(values)


def difference(png, other):
    """The share of the pixels that differ by more than a little, from 0 to 1; pictures of other sizes differ in all."""
    (rows, pixel), (others, other_pixel) = read_rows(png), read_rows(other)
    if len(rows) != len(others) or len(rows[0]) != len(others[0]) or pixel != other_pixel:
        return 1.0
    differing = sum(any(abs(a - b) > 8 for a, b in zip(row[at:at + pixel], beside[at:at + pixel]))
                    for row, beside in zip(rows, others) if row != beside for at in range(0, len(row), pixel))
    return differing * pixel / (len(rows) * len(rows[0]))
