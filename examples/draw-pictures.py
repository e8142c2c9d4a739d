#!/usr/bin/env python3
"""Draws the example pictures into this folder: sunset, balls, cartoon, logo, and the sprite frames coin-0 to coin-3."""

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


COIN_WIDTH, COIN_HEIGHT = 16, 40  # round on the TVC's screen, whose pixels are 2.5 times as wide as high


def coin(half_width):
    """One view of a turning coin; where there is none, pixels are transparent."""
    def pixel(x, y):
        across = (x + 0.5 - COIN_WIDTH / 2) / half_width
        down = (y + 0.5 - COIN_HEIGHT / 2) / (COIN_HEIGHT / 2 - 0.5)
        distance = math.hypot(across, down)
        if distance > 1:
            return (0, 0, 0, 0)
        if half_width < 2 or distance > 0.78:
            return (146, 146, 0, 255)
        if abs(across) < 0.18 and abs(down) < 0.55:
            return (146, 146, 0, 255)
        return (255, 255, 255, 255) if -0.62 < across < -0.4 and down < 0 else (255, 255, 0, 255)
    return pixel


BALLS_SIZE = (400, 300)
EYE = (0.0, 1.55, -5.2)
LIGHT = (-3.2, 5.0, -3.0)
# Centre, radius, colour and gloss of what lies on the table; the table is the plane of height 0.
BALLS = [((-1.25, 0.62, 0.25), 0.62, (205, 30, 28), 0.75), ((0.02, 0.55, -0.55), 0.55, (240, 130, 20), 0.35),
         ((1.12, 0.68, 0.35), 0.68, (95, 160, 45), 0.6), ((0.1, 0.98, 1.15), 0.98, (40, 70, 170), 0.9),
         ((-0.62, 0.3, -1.2), 0.3, (120, 30, 110), 0.8), ((0.92, 0.27, -1.15), 0.27, (250, 220, 60), 0.5)]


def minus(a, b):
    return tuple(x - y for x, y in zip(a, b))


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def unit(a):
    length = math.sqrt(dot(a, a))
    return tuple(x / length for x in a)


def nearest_ball(start, direction):
    """The distance of the first ball that a ray meets, and the ball; None when it meets none."""
    nearest = None
    for ball in BALLS:
        offset = minus(start, ball[0])
        half = dot(offset, direction)
        root = half * half - dot(offset, offset) + ball[1] * ball[1]
        distance = -half - math.sqrt(root) if root > 0 else -1
        if distance > 1e-4 and (nearest is None or distance < nearest[0]):
            nearest = (distance, ball)
    return nearest


def light_at(point, normal):
    """How much light reaches a place: some from all sides, most from a soft lamp."""
    direct = 0.0
    for dx, dz in ((-0.35, -0.35), (0.35, -0.35), (-0.35, 0.35), (0.35, 0.35)):
        to_light = unit(minus((LIGHT[0] + dx, LIGHT[1], LIGHT[2] + dz), point))
        if nearest_ball(point, to_light) is None:
            direct += max(0.0, dot(normal, to_light)) / 4
    return 0.16 + 0.84 * direct


def wood(x, z):
    """The grain of the table."""
    ring = math.sin(6 * math.hypot(x * 0.35 + 2, z + 0.12 * math.sin(x * 1.7)) + 0.6 * math.sin(z * 3.1))
    return tuple(a + b * ring for a, b in zip((150, 96, 54), (22, 17, 12)))


def look(start, direction, depth=0):
    """The light that comes from a direction, as red, green and blue up to 255."""
    found = nearest_ball(start, direction)
    if found:
        distance, (centre, radius, color, gloss) = found
        point = tuple(a + b * distance for a, b in zip(start, direction))
        normal = tuple((a - b) / radius for a, b in zip(point, centre))
        light = light_at(point, normal)
        mirrored = tuple(a - 2 * b * dot(direction, normal) for a, b in zip(direction, normal))
        shine = max(0.0, dot(mirrored, unit(minus(LIGHT, point)))) ** 40 * gloss * 255 if light > 0.2 else 0
        edge = 0.04 + 0.4 * (1 + dot(direction, normal)) ** 3 * gloss
        around = look(point, mirrored, 1) if depth == 0 else (90, 80, 75)
        return tuple(c * light * (1 - edge) + a * edge + shine for c, a in zip(color, around))
    if direction[1] < -1e-3:
        distance = -start[1] / direction[1]
        point = tuple(a + b * distance for a, b in zip(start, direction))
        if point[2] < 4.5:
            light = light_at(point, (0, 1, 0))
            return tuple(c * light for c in wood(point[0], point[2]))
    height = min(1.0, max(0.0, direction[1] + 0.25) / 0.6)
    lamp = math.exp(-((direction[0] + 0.3) ** 2) * 4)
    return tuple((a + (b - a) * height) * (0.55 + 0.45 * lamp) for a, b in zip((196, 176, 150), (70, 92, 120)))


def balls(x, y):
    """Balls on a table, each pixel the mean of four rays, as a camera would see them."""
    width, height = BALLS_SIZE
    total = [0.0, 0.0, 0.0]
    for dx in (0.25, 0.75):
        for dy in (0.25, 0.75):
            direction = unit(((x + dx - width / 2) / width * 1.02, (height / 2 - y - dy) / width * 1.02 - 0.17, 1.25))
            for i, value in enumerate(look(EYE, direction)):
                total[i] += value / 4
    return tuple(min(255, round(value)) for value in total)


CARTOON_SIZE = (320, 240)
INK = (20, 12, 24)


def is_within(points, x, y):
    """Whether a place is within a polygon."""
    inside = False
    for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
        if (ay > y) != (by > y) and x < ax + (y - ay) / (by - ay) * (bx - ax):
            inside = not inside
    return inside


def box(left, top, right, bottom):
    return [(left, top), (right, top), (right, bottom), (left, bottom)]


# From the front to the back: the colour and a polygon. The inked outline of each is 1.5 pixels wide.
CARTOON = [((40, 40, 160), box(176, 126, 200, 150)), ((40, 40, 160), box(212, 126, 236, 150)),
           ((150, 140, 10), box(130, 138, 156, 182)),
           ((160, 18, 12), [(104, 112), (180, 56), (256, 112)]), ((158, 156, 148), box(116, 112, 246, 182)),
           ((150, 20, 150), box(220, 62, 234, 100))]
OUTLINE = 1.5


def cartoon_at(x, y):
    """A house on a hill: flat areas, most of which are close to a colour of the TVC."""
    for color, points in CARTOON:
        inner = all(is_within(points, x + dx, y + dy)
                    for dx, dy in ((-OUTLINE, 0), (OUTLINE, 0), (0, -OUTLINE), (0, OUTLINE)))
        if is_within(points, x, y):
            return color if inner else INK
    for crown_x, crown_y, radius in ((56, 118, 30), (34, 136, 20), (80, 138, 20)):
        if math.hypot(x - crown_x, y - crown_y) < radius:
            return (8, 138, 20)
    if 50 < x < 62 and 130 < y < 190:
        return (150, 24, 8)
    hill = 176 + ((x - 170) / 30) ** 2
    if y > hill:
        return (20, 235, 30) if y > hill + OUTLINE else INK
    if math.hypot(x - 276, y - 40) < 24:
        return (255, 245, 40)
    for cloud_x, cloud_y, radius in ((90, 40, 16), (112, 34, 20), (134, 42, 15)):
        if math.hypot(x - cloud_x, y - cloud_y) < radius:
            return (245, 248, 250)
    return gradient([(0, (0, 140, 150)), (190, (60, 235, 250))], y)


def cartoon(x, y):
    """Each pixel is the mean of four places."""
    places = [cartoon_at(x + dx, y + dy) for dx in (0.25, 0.75) for dy in (0.25, 0.75)]
    return tuple(round(sum(values) / 4) for values in zip(*places))


LOGO_SIZE = (300, 300)


def logo(x, y):
    """A ring and a star of soft edges, on nothing; what is transparent hides magenta."""
    across, down = x - LOGO_SIZE[0] / 2 + 0.5, y - LOGO_SIZE[1] / 2 + 0.5
    distance = math.hypot(across, down)
    angle = math.atan2(across, -down)
    part = angle / (2 * math.pi / 5) % 1
    star = 96 - 110 * min(part, 1 - part) - distance
    ring = 13 - abs(distance - 126)
    glow = max(0.0, 1 - distance / 150) ** 2 * 0.6 if distance < 113 else 0.0
    for edge, color in ((star, (255, 230, 40)), (ring, (255, 255, 255))):
        if edge > -2:
            return (*color, round(255 * min(1.0, (edge + 2) / 4)))
    return (255, 120, 20, round(255 * glow)) if glow > 0.01 else (255, 0, 255, 0)


# The sunset is made for the TVC's screen of 128 x 240 pixels; the scene above has square ones, 256 x 192.
write_png("sunset.png", 128, 240, lambda x, y: sunset(2 * x, y * 4 // 5))
write_png("balls.png", *BALLS_SIZE, balls)
write_png("cartoon.png", *CARTOON_SIZE, cartoon)
write_png("logo.png", *LOGO_SIZE, logo)
for number, half_width in enumerate((7.5, 5, 1.5, 5)):
    write_png(f"coin-{number}.png", COIN_WIDTH, COIN_HEIGHT, coin(half_width))
