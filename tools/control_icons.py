#!/usr/bin/env python3
"""Writes server/icons/<control>.ico from the toolbox bitmaps in server/bitmaps.

Each public control's registry entry names its icon (DefaultIcon), which hosts show for the
control's class. The icon is the toolbox picture on 16 x 16 pixels with the toolbox key colour
(silver) transparent. Run it after changing a toolbox bitmap; the .ico files are committed, so
builds need no Python."""
import os
import struct

KEY = (192, 192, 192)  # the toolbox bitmaps' transparent colour
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'server')


def read_bmp(path):
    data = open(path, 'rb').read()
    offset = struct.unpack_from('<I', data, 10)[0]
    width, height, _, bits = struct.unpack_from('<iiHH', data, 18)
    if bits != 24:
        raise SystemExit(f'{path}: 24-bit bitmaps only')
    stride = (width * 3 + 3) & ~3
    rows = []
    for y in range(abs(height)):
        at = offset + y * stride
        rows.append([tuple(data[at + 3 * x + 2 - c] for c in range(3)) for x in range(width)])
    if height > 0:
        rows.reverse()  # stored bottom-up
    return width, rows  # rows top-down, pixels (r, g, b)


def icon(width, rows):
    size = 16
    pixels = [[None] * size for _ in range(size)]
    top = size - len(rows)  # a 15-row bitmap stands on the icon's bottom row
    for y, row in enumerate(rows):
        for x, p in enumerate(row[:size]):
            pixels[top + y][x] = p
    xor, mask = b'', b''
    for y in reversed(range(size)):  # bottom-up
        bits = 0
        for x in range(size):
            p = pixels[y][x]
            if p is None or p == KEY:
                xor += b'\0\0\0\0'
                bits |= 1 << (15 - x)
            else:
                xor += bytes((p[2], p[1], p[0], 255))
        mask += struct.pack('>H', bits) + b'\0\0'
    header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, len(xor) + len(mask), 0, 0, 0, 0)
    image = header + xor + mask
    return struct.pack('<HHH', 0, 1, 1) + struct.pack('<BBBBHHII', size, size, 0, 0, 1, 32, len(image), 22) + image


def main():
    os.makedirs(os.path.join(ROOT, 'icons'), exist_ok=True)
    for name in sorted(os.listdir(os.path.join(ROOT, 'bitmaps'))):
        if not name.endswith('.bmp'):
            continue
        width, rows = read_bmp(os.path.join(ROOT, 'bitmaps', name))
        with open(os.path.join(ROOT, 'icons', name[:-4] + '.ico'), 'wb') as f:
            f.write(icon(width, rows))


if __name__ == '__main__':
    main()
