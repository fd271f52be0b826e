#!/usr/bin/env python3
"""Writes the 16 x 15 toolbox bitmaps of server/bitmaps from the pictures below.

Run it after adding or changing a picture; the .bmp files are committed, so builds need no
Python. Each picture is 15 rows of 16 characters; the letters name colours (silver is the
transparent key colour hosts use for toolbox bitmaps)."""
import os
import struct

COLOURS = {
    '.': (192, 192, 192),  # background
    'w': (255, 255, 255),
    'k': (0, 0, 0),
    'g': (128, 128, 128),
    'd': (64, 64, 64),
    'b': (0, 0, 128),
    'B': (0, 0, 255),
    'r': (192, 0, 0),
    'y': (255, 255, 0),
    'G': (0, 160, 0),
    'R': (255, 0, 0),
}

PICTURES = {
    'cframe': [
        '................',
        '.wwwwwwwwwwwwwk.',
        '.wgggggggggggdk.',
        '.wg..kkkk....dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wg..........dk.',
        '.wdddddddddddddk',
        '.kkkkkkkkkkkkkkk',
        '................',
    ],
    'grid': [
        '................',
        '.kkkkkkkkkkkkkk.',
        '.kggggkggggkggk.',
        '.kkkkkkkkkkkkkk.',
        '.kwwwwkwwwwkwwk.',
        '.kkkkkkkkkkkkkk.',
        '.kwwwwkwwwwkwwk.',
        '.kkkkkkkkkkkkkk.',
        '.kwwwwkwwwwkwwk.',
        '.kkkkkkkkkkkkkk.',
        '.kwwwwkwwwwkwwk.',
        '.kkkkkkkkkkkkkk.',
        '.kbbbbkbbbbkbbk.',
        '.kkkkkkkkkkkkkk.',
        '................',
    ],
    'cbtn': [
        '................',
        '................',
        '................',
        '.wwwwwwwwwwwwwk.',
        '.w...........gk.',
        '.w...........gk.',
        '.w...kkkkk...gk.',
        '.w...........gk.',
        '.w...........gk.',
        '.w...........gk.',
        '.wggggggggggggk.',
        '.kkkkkkkkkkkkkk.',
        '................',
        '................',
        '................',
    ],
    # A button with a colour bar and a drop arrow, and the palette it opens.
    'cbtnddp': [
        '................',
        '.wwwwwwwwwwwwwk.',
        '.w.......g...gk.',
        '.w.RRRRR.g...gk.',
        '.w.RRRRR.gkkkgk.',
        '.w.......g.k.gk.',
        '.wggggggggggggk.',
        '.kkkkkkkkkkkkkk.',
        '..kkkkkkkkkkk...',
        '..kRRkyykGGkk...',
        '..kRRkyykGGkk...',
        '..kkkkkkkkkkk...',
        '..kBBkbbkwwkk...',
        '..kBBkbbkwwkk...',
        '..kkkkkkkkkkk...',
    ],
    # A picture (a sun over a hill) framed as a button.
    'pbtn': [
        '................',
        '.wwwwwwwwwwwwwk.',
        '.wBBBBBBBBBBBgk.',
        '.wBBByyBBBBBBgk.',
        '.wBByyyyBBBBBgk.',
        '.wBByyyyBBBBBgk.',
        '.wBBByyBBBBBBgk.',
        '.wBBBBBBBGGBBgk.',
        '.wBBBBBGGGGGBgk.',
        '.wBBGGGGGGGGGgk.',
        '.wGGGGGGGGGGGgk.',
        '.wGGGGGGGGGGGgk.',
        '.wggggggggggggk.',
        '.kkkkkkkkkkkkkk.',
        '................',
    ],
    # A window with a padlock and a size grip: the resize lock.
    'resizelck': [
        '................',
        '.bbbbbbbbbbbbbk.',
        '.wwwwwwwwwwwwwk.',
        '.w............k.',
        '.w.....kkk....k.',
        '.w....k...k...k.',
        '.w....k...k...k.',
        '.w...kkkkkkk..k.',
        '.w...kyyyyyk..k.',
        '.w...kyykyyk..k.',
        '.w...kyykyyk..k.',
        '.w...kyyyyyk.gk.',
        '.w...kkkkkkkggk.',
        '.kkkkkkkkkkkkkk.',
        '................',
    ],
    # A menu bar, its open menu with the highlighted item, and that item's text in a status
    # line below: the menu text reporter.
    'mnutxt': [
        '................',
        '.kk.kkk.kk......',
        'gggggggggggggggg',
        '.kkkkkkkkk......',
        '.kwkkkkwwk......',
        '.kwwwwwwwk......',
        '.kbbbbbbbk......',
        '.kbwwwwbbk......',
        '.kbbbbbbbk......',
        '.kwkkkwwwk......',
        '.kkkkkkkkk......',
        '.....r..........',
        'yyyyyryyyyyyyyyy',
        'ykkkkkkkkk.....y',
        'yyyyyyyyyyyyyyyy',
    ],
    'updown': [
        '................',
        '................',
        '................',
        'gggggggggggggggw',
        'gkkkkkkkkkkkkkdw',
        'gkwwwwwwwwww.kdw',
        'gkwwwkwwwww.k.dw',
        'gkwwkkwwww.kkkdw',
        'gkwwwkwwwwkkkkdw',
        'gkwwwkwwww.kkkdw',
        'gkwwkkkwwww.k.dw',
        'gkwwwwwwwwww.kdw',
        'gwwwwwwwwwwwwwdw',
        'wwwwwwwwwwwwwwww',
        '................',
    ],
    'lnev': [
        '................',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '.......gw.......',
        '................',
    ],
}


def write_bmp(path, rows):
    width, height = 16, 15
    stride = (width * 3 + 3) & ~3
    pixels = b''
    for row in reversed(rows):
        line = b''.join(bytes(reversed(COLOURS[c])) for c in row)
        pixels += line + b'\0' * (stride - len(line))
    header = struct.pack('<IiiHHIIiiII', 40, width, height, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    file_header = struct.pack('<2sIHHI', b'BM', 14 + len(header) + len(pixels), 0, 0, 14 + len(header))
    with open(path, 'wb') as f:
        f.write(file_header + header + pixels)


if __name__ == '__main__':
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'server', 'bitmaps')
    for name, rows in PICTURES.items():
        assert len(rows) == 15 and all(len(r) == 16 for r in rows), name
        write_bmp(os.path.join(out, name + '.bmp'), rows)
