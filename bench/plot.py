#!/usr/bin/env python3
"""Draws the figures of peers_bench: plot.py PERFORMANCE.tsv PICTURE.svg

Grouped bars by image, nanoseconds per pixel. A codec that is several times slower than all others has its bars cut at
the edge, with the figure on them, so that the rest stays readable.
"""

import csv
import math
import sys
from xml.sax.saxutils import escape

OURS = "ours"
COPY = "copy of the output"
COLOURS = ["#0b6e99", "#8cc0d6", "#d9822b", "#d4d4d4", "#6b4c9a"]
INK, PALE, FAINT = "#222222", "#e2e2e2", "#666666"

WIDTH, LEFT, RIGHT, TOP, BOTTOM = 900, 150, 60, 84, 58
BAR, GAP = 11, 14  # height of a bar; between two images
SLOW = 4  # a codec is off the scale when its worst is this many times ours


def read(path):
    """Images in their order, titles in the order of the legend, and the figures by (image, title)."""
    images, titles, figures = {}, [], {}
    with open(path, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file, delimiter="\t"):
            title = row["title"]
            if title not in titles:
                titles.append(title)
            figures[row["image"], title] = float(row["least_ns_per_pixel"])
            if title == OURS:
                images[row["image"]] = (int(row["pixels"]), float(row["coded_bits_per_pixel"]))
    if not images:
        sys.exit(f"plot.py: {path} has no figures of ours")
    # Ours first, with its variants, then the others.
    titles.sort(key=lambda title: (not title.startswith(OURS), title != OURS))
    return images, titles, figures


def tick_step(limit):
    """1, 2 or 5 times a power of ten, for some eight ticks."""
    power = 10 ** math.floor(math.log10(limit / 8))
    return next(power * n for n in (1, 2, 5, 10) if limit / (power * n) <= 9)


class Svg:
    def __init__(self):
        self.parts = []

    def text(self, x, y, words, size=12, anchor="start", colour=INK, weight="normal"):
        self.parts.append(
            f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" fill="{colour}" '
            f'font-weight="{weight}">{escape(words)}</text>'
        )

    def line(self, x1, y1, x2, y2, colour, width=1.0):
        self.parts.append(
            f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
            f'stroke-width="{width}"/>'
        )

    def bar(self, x, y, width, height, colour):
        self.parts.append(
            f'<rect x="{x:.1f}" y="{y:.1f}" width="{max(width, 0.5):.1f}" height="{height}" fill="{colour}"/>'
        )

    def cut(self, x, y, height):
        """A white zigzag over a bar that goes on beyond the edge."""
        step = height / 4
        points = " ".join(f"{x + (4 if i % 2 else 0):.1f},{y + i * step:.1f}" for i in range(5))
        self.parts.append(f'<polyline points="{points}" fill="none" stroke="white" stroke-width="2"/>')

    def write(self, path, height):
        with open(path, "w", encoding="utf-8") as file:
            file.write(
                f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" '
                f'viewBox="0 0 {WIDTH} {height}" font-family="DejaVu Sans, Helvetica, Arial, sans-serif">\n'
                f'<rect width="{WIDTH}" height="{height}" fill="white"/>\n'
            )
            file.write("\n".join(self.parts))
            file.write("\n</svg>\n")


def draw(images, titles, figures, path):
    shown = [title for title in titles if title != COPY]
    colours = {title: COLOURS[i % len(COLOURS)] for i, title in enumerate(shown)}
    worst = {title: max(value for (_, t), value in figures.items() if t == title) for title in shown}
    limit = 1.08 * max(value for value in worst.values() if value <= SLOW * worst[OURS])
    scale = (WIDTH - LEFT - RIGHT) / limit
    group = BAR * len(shown) + GAP
    bottom = TOP + group * len(images)
    svg = Svg()

    svg.text(20, 28, "Decoding to packed pixels, one thread: nanoseconds per pixel, less is better", 16, weight="bold")
    x = 20
    for title in shown:
        svg.bar(x, 44, 12, 12, colours[title])
        svg.text(x + 17, 54.5, title)
        x += 17 + 7.2 * len(title) + 22

    step = tick_step(limit)
    for i in range(int(limit / step) + 1):
        at = LEFT + i * step * scale
        svg.line(at, TOP - 6, at, bottom - GAP + 6, PALE)
        svg.text(at, bottom + 6, f"{i * step:g}", 11, "middle")
    note = "The least of many runs, set-up included. Under each name: the picture's size and how far our format packs it."
    svg.text(LEFT, bottom + 26, note, 11, colour=FAINT)
    if any(value > limit for value in worst.values()):
        svg.text(LEFT, bottom + 42, "A bar with a zigzag is cut off; its figure stands at its end.", 11, colour=FAINT)

    y = TOP
    for image, (pixels, bits) in images.items():
        middle = y + BAR * len(shown) / 2
        svg.text(LEFT - 10, middle - 1, image, 12, "end", weight="bold")
        svg.text(LEFT - 10, middle + 13, f"{pixels / 1e6:.1f} Mpx, {bits:.1f} bit/px", 10, "end", FAINT)
        for title in shown:
            value = figures.get((image, title))
            if value is not None and value > limit:
                edge = WIDTH - 20
                svg.bar(LEFT, y, edge - LEFT, BAR - 1, colours[title])
                svg.cut(edge - 48, y - 0.5, BAR)
                svg.text(edge - 4, y + BAR - 2, f"{value:.0f}", 10, "end")
            elif value is not None:
                svg.bar(LEFT, y, value * scale, BAR - 1, colours[title])
                svg.text(LEFT + value * scale + 4, y + BAR - 2, f"{value:.1f}", 10)
            y += BAR
        y += GAP
    svg.line(LEFT, TOP - 6, LEFT, bottom - GAP + 6, INK)
    svg.write(path, bottom + BOTTOM)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: plot.py PERFORMANCE.tsv PICTURE.svg")
    draw(*read(sys.argv[1]), sys.argv[2])


if __name__ == "__main__":
    main()
