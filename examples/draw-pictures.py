#!/usr/bin/env python3
"""Draws the example picture sunset.png and the sprite frames coin-0.png to coin-3.png into this folder."""

import math
import pathlib
import struct
import zlib

FOLDER = pathlib.Path(__file__).parent


def write_png(name, width, height, pixel_at):
    """Writes a PNG of 8-bit components, as many as pixel_at(x, y) gives: red, green, blue and perhaps alpha."""
    rows = bytearray()
    channels = len(pixel_at(0, 0))
    for y in range(height):
        row = bytes(value for x in range(width) for value in pixel_at(x, y))
        # Each byte as the difference from the pixel to the left, which packs best.
        rows += b"\x01" + bytes((value - (row[i - channels] if i >= channels else 0)) & 0xFF
                                for i, value in enumerate(row))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    color_type = {3: 2, 4: 6}[channels]
    header = struct.pack(">IIBBBBB", width, height, 8, color_type, 0, 0, 0)
    (FOLDER / name).write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                                chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


def gradient(stops, position):
    """The colour at a position of a list of (position, colour)."""
    for (start, first), (end, second) in zip(stops, stops[1:]):
        if position <= end:
            part = (position - start) / (end - start)
            return tuple(round(a + (b - a) * part) for a, b in zip(first, second))
    return stops[-1][1]


HORIZON = 120
SUN_X, SUN_Y, SUN_RADIUS = 150, 104, 30
SKY = [(0, (10, 10, 95)), (45, (95, 20, 140)), (78, (225, 40, 60)), (100, (255, 130, 30)),
       (HORIZON, (255, 215, 80))]
SEA = [(HORIZON, (200, 80, 150)), (140, (80, 50, 160)), (192, (8, 12, 80))]


def ground(x, y):
    """Sky, sun and sea."""
    if y < HORIZON:
        distance = math.hypot(x - SUN_X, y - SUN_Y)
        if distance < SUN_RADIUS:
            return gradient([(0, (255, 255, 235)), (SUN_RADIUS, (255, 235, 90))], distance)
        glow = max(0.0, 1 - (distance - SUN_RADIUS) / 30)
        return tuple(round(a + (b - a) * glow * 0.6) for a, b in zip(gradient(SKY, y), (255, 200, 40)))
    # The sun's road over the water: dashes that widen and thin out towards the viewer.
    depth = y - HORIZON
    wave = math.sin(y * y * 0.05) * 9 + math.sin(x * 0.35 + y * 1.9) * 6
    if abs(x - SUN_X + wave) < 26 - depth * 0.15 and (y * 5 // 7) % 3 != 0:
        return gradient([(0, (255, 230, 120)), (72, (225, 120, 60))], depth)
    return gradient(SEA, y)


def sunset(x, y):
    far = 92 + 13 * math.sin(x / 21) + 7 * math.sin(x / 9 + 1) + max(0, x - 70) * 0.55
    if far < y < HORIZON:
        return gradient([(70, (70, 30, 130)), (HORIZON, (30, 15, 100))], y)
    right = 100 + 10 * math.sin(x / 17 + 2) + max(0, 232 - x) * 0.5
    if right < y < HORIZON:
        return (25, 15, 100)
    near = 150 + 9 * math.sin(x / 26 + 4) + max(0, x - 40) * 0.42 + max(0, 28 - x) * 0.2
    if near < y:
        return gradient([(130, (40, 110, 40)), (192, (10, 50, 25))], y)
    # The boat: a mast, two sails and a hull.
    if x == 106 and 92 <= y < 142:
        return (60, 30, 20)
    if 108 <= x and 94 <= y < 137 and (x - 108) < (y - 94) * 0.62:
        return (250, 245, 235)
    if x <= 104 and 102 <= y < 137 and (104 - x) < (y - 102) * 0.5:
        return (225, 60, 45)
    if 142 <= y < 151 and 84 + (y - 142) <= x <= 138 - (y - 142):
        return (245, 245, 245) if y == 143 else (130, 25, 20)
    return ground(x, y)


COIN_SIZE = 16


def coin(half_width):
    """One view of a turning coin; where there is none, pixels are transparent."""
    def pixel(x, y):
        across = (x + 0.5 - COIN_SIZE / 2) / half_width
        distance = math.hypot(across, (y + 0.5 - COIN_SIZE / 2) / 7.5)
        if distance > 1:
            return (0, 0, 0, 0)
        if half_width < 2 or distance > 0.78:
            return (146, 146, 0, 255)
        if abs(across) < 0.18 and 4 <= y <= 11:
            return (146, 146, 0, 255)
        return (255, 255, 255, 255) if -0.62 < across < -0.4 and y < 8 else (255, 255, 0, 255)
    return pixel


write_png("sunset.png", 256, 192, sunset)
for number, half_width in enumerate((7.5, 5, 1.5, 5)):
    write_png(f"coin-{number}.png", COIN_SIZE, COIN_SIZE, coin(half_width))
