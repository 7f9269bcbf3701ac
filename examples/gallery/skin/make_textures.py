#!/usr/bin/env python3
"""Draws the textures of the default skin into skin/textures/*.png.

Only the standard library is used: shapes are signed distance fields, so every
edge is anti-aliased with coverage = clamp(0.5 - distance); shadows are the
same distance through a Gaussian (erfc); PNG files are written with zlib and
struct. Run it from anywhere; it always writes beside itself:

    python3 examples/gallery/skin/make_textures.py

The numbers that the skin script needs (nine-cell insets, picture sizes and
atlas cells) are printed; default.lua repeats them where it names each
texture, so change both together.
"""

import math
import os
import struct
import zlib

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "textures")

# ---------------------------------------------------------------- palette


def rgb(hex_string):
    h = hex_string.lstrip("#")
    return tuple(int(h[i:i + 2], 16) / 255.0 for i in (0, 2, 4))


INK = rgb("#1e2430")
WHITE = rgb("#ffffff")
BLACK = rgb("#000000")
BODY = rgb("#f5f7fa")          # window body
LINE = rgb("#d9dee5")          # hairlines inside windows
LINE_SOFT = rgb("#e4e8ee")
BORDER = rgb("#c3cad5")        # control borders
BORDER_HOVER = rgb("#9ea9b9")
BORDER_PRESSED = rgb("#94a0b1")
FILL_HOVER = rgb("#edf1f6")
FILL_PRESSED = rgb("#e6eaf0")
FILL_DISABLED = rgb("#f2f4f7")
BORDER_DISABLED = rgb("#dde1e7")
ACCENT = rgb("#2f6feb")
ACCENT_HOVER = rgb("#4a83f2")
ACCENT_PRESSED = rgb("#2458c6")
ACCENT_DARK = rgb("#1d4fb8")
ACCENT_SOFT = rgb("#e4edfd")
ACCENT_SOFT_HOVER = rgb("#d7e4fc")
ACCENT_SOFT_PRESSED = rgb("#c8daf9")
ACCENT_DISABLED = rgb("#b3c8ef")
DANGER = rgb("#d64541")
DANGER_HOVER = rgb("#e0584f")
DANGER_PRESSED = rgb("#b93632")
AMBER = rgb("#f0a532")
DESKTOP_TOP = rgb("#3d4d66")
DESKTOP_BOTTOM = rgb("#1f2633")

# ---------------------------------------------------------------- drawing


def clamp01(v):
    return 0.0 if v < 0.0 else 1.0 if v > 1.0 else v


def coverage(distance):
    """Area of a pixel inside an edge at `distance` (negative inside)."""
    return clamp01(0.5 - distance)


def sd_round_rect(px, py, x0, y0, x1, y1, r):
    """Signed distance to a rounded rectangle (negative inside)."""
    cx, cy = (x0 + x1) / 2.0, (y0 + y1) / 2.0
    hx, hy = (x1 - x0) / 2.0 - r, (y1 - y0) / 2.0 - r
    qx, qy = abs(px - cx) - hx, abs(py - cy) - hy
    outside = math.hypot(max(qx, 0.0), max(qy, 0.0))
    return outside + min(max(qx, qy), 0.0) - r


def sd_circle(px, py, cx, cy, r):
    return math.hypot(px - cx, py - cy) - r


def sd_segment(px, py, ax, ay, bx, by):
    """Distance to a line segment (a stroke is this minus half its width)."""
    dx, dy = bx - ax, by - ay
    t = clamp01(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy))
    return math.hypot(px - ax - t * dx, py - ay - t * dy)


def sd_polyline(px, py, points):
    return min(sd_segment(px, py, *points[i], *points[i + 1]) for i in range(len(points) - 1))


class Canvas:
    """RGBA in premultiplied floats; shapes are painted over what is there."""

    def __init__(self, width, height, bleed=WHITE):
        self.w, self.h = width, height
        self.px = [[0.0, 0.0, 0.0, 0.0] for _ in range(width * height)]
        # Colour of fully transparent pixels: linear filtering mixes it into
        # the edges, so it should be the colour of the edge.
        self.bleed = bleed

    def paint(self, shade):
        """`shade(x, y)` gives (colour, alpha) or None at each pixel centre."""
        for y in range(self.h):
            for x in range(self.w):
                result = shade(x + 0.5, y + 0.5)
                if result is None:
                    continue
                color, alpha = result
                if alpha <= 0.0:
                    continue
                p = self.px[y * self.w + x]
                keep = 1.0 - alpha
                for c in range(3):
                    p[c] = color[c] * alpha + p[c] * keep
                p[3] = alpha + p[3] * keep

    def rows(self):
        out = []
        for y in range(self.h):
            row = bytearray()
            for x in range(self.w):
                r, g, b, a = self.px[y * self.w + x]
                if a < 0.5 / 255.0:
                    color = self.bleed
                    a = 0.0
                else:
                    color = (r / a, g / a, b / a)
                row += bytes(int(round(clamp01(v) * 255.0)) for v in (*color, a))
            out.append(bytes(row))
        return out

    def save(self, name):
        write_png(os.path.join(OUT, name), self.w, self.h, self.rows())


def write_png(path, width, height, rows):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    raw = b"".join(b"\x00" + row for row in rows)
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(chunk(b"IHDR", header))
        f.write(chunk(b"IDAT", zlib.compress(raw, 9)))
        f.write(chunk(b"IEND", b""))


def shadow(box, radius, blur, opacity, dy):
    """A soft shadow of a rounded box moved down by `dy`."""
    x0, y0, x1, y1 = box
    sigma = blur / 2.0

    def shade(px, py):
        d = sd_round_rect(px, py - dy, x0, y0, x1, y1, radius)
        a = opacity * 0.5 * math.erfc(d / (sigma * math.sqrt(2.0)))
        return (BLACK, a)

    return shade


def filled(box, radius, color, opacity=1.0):
    x0, y0, x1, y1 = box

    def shade(px, py):
        return (color, opacity * coverage(sd_round_rect(px, py, x0, y0, x1, y1, radius)))

    return shade


def ring(box, radius, color, width=1.0, opacity=1.0):
    """A border of `width` pixels just inside the box's edge."""
    x0, y0, x1, y1 = box

    def shade(px, py):
        d = sd_round_rect(px, py, x0, y0, x1, y1, radius)
        return (color, opacity * (coverage(d) - coverage(d + width)))

    return shade


def clipped(shade, box, radius, inset=0.0):
    """`shade` only inside a rounded box (less `inset`)."""
    x0, y0, x1, y1 = box

    def inner(px, py):
        result = shade(px, py)
        if result is None:
            return None
        k = coverage(sd_round_rect(px, py, x0, y0, x1, y1, radius) + inset)
        return (result[0], result[1] * k)

    return inner


def band(y0, y1, color):
    def shade(px, py):
        return (color, clamp01(min(py - y0 + 0.5, y1 - py + 0.5)))

    return shade


def stroke(points, width, color):
    def shade(px, py):
        return (color, coverage(sd_polyline(px, py, points) - width / 2.0))

    return shade


def circle(cx, cy, r, color):
    def shade(px, py):
        return (color, coverage(sd_circle(px, py, cx, cy, r)))

    return shade


def vertical_gradient(box, radius, top, bottom):
    x0, y0, x1, y1 = box

    def shade(px, py):
        t = clamp01((py - y0) / (y1 - y0))
        color = tuple(top[c] + (bottom[c] - top[c]) * t for c in range(3))
        return (color, coverage(sd_round_rect(px, py, x0, y0, x1, y1, radius)))

    return shade


REPORT = []


def report(name, **numbers):
    REPORT.append((name, numbers))

# ---------------------------------------------------------------- window frames


def window_frame(name, shadow_opacity, header_height):
    """A window: soft shadow, rounded frame, white header band with a hairline
    under it, and the body colour below. The header band lies in the top row
    of the nine cells, so it stretches across but never down."""
    margin_side, margin_top, margin_bottom = 14, 10, 18
    radius = 10
    # Each inset reaches one texel past the curves and the hairline: the
    # filter at the edge of a stretched cell then only meets its own colour.
    top = margin_top + header_height + 1
    left = right = margin_side + radius + 1
    bottom = margin_bottom + radius + 1
    w, h = left + 4 + right, top + 4 + bottom
    box = (margin_side, margin_top, w - margin_side, h - margin_bottom)
    c = Canvas(w, h, bleed=BORDER)
    c.paint(shadow(box, radius, 16.0, shadow_opacity, 4.0))
    c.paint(shadow(box, radius, 3.0, shadow_opacity * 0.5, 1.0))
    c.paint(filled(box, radius, BODY))
    separator = margin_top + header_height - 1
    c.paint(clipped(band(box[1] - 1, separator, WHITE), box, radius))
    c.paint(clipped(band(separator, separator + 1, LINE), box, radius, inset=1.0))
    c.paint(ring(box, radius, rgb("#aeb7c4")))
    c.save(name)
    report(name, size=(w, h), insets=(left, top, right, bottom),
           content=(margin_side, margin_top, margin_side, margin_bottom))


def card_frame(name, fill, border, radius, shadow_opacity=0.0, margins=(0, 0, 0), blur=8.0):
    """A rounded card, optionally with a shadow and margins around it for it."""
    side, top_margin, bottom_margin = margins
    left = right = side + radius + 1
    top = top_margin + radius + 1
    bottom = bottom_margin + radius + 1
    w, h = left + 4 + right, top + 4 + bottom
    box = (side, top_margin, w - side, h - bottom_margin)
    c = Canvas(w, h, bleed=(border or fill)[0])
    if shadow_opacity > 0.0:
        c.paint(shadow(box, radius, blur, shadow_opacity, margins[2] / 4.0))
        c.paint(shadow(box, radius, 2.0, shadow_opacity * 0.5, 0.5))
    c.paint(filled(box, radius, fill[0], fill[1]))
    if border:
        c.paint(ring(box, radius, border[0], 1.0, border[1]))
    c.save(name)
    report(name, size=(w, h), insets=(left, top, right, bottom), content=(side, top_margin, side, bottom_margin))

# ---------------------------------------------------------------- controls


def control(name, fill, border, radius=6, lift=True, inner_shadow=False):
    """A button face: 1 px border, a 1 px shadow under it when lifted, a
    shadow along the inner top edge when pushed in."""
    left = right = radius + 1
    top = radius + 1
    bottom = radius + 2
    w, h = left + 4 + right, top + 4 + bottom
    box = (0, 0, w, h - 1)
    c = Canvas(w, h, bleed=border)
    if lift:
        c.paint(filled((0, 1, w, h), radius, BLACK, 0.10))
    c.paint(filled(box, radius, fill))
    if inner_shadow:
        def pushed_in(px, py):
            inside = coverage(sd_round_rect(px, py, *box, radius) + 1.0)
            return (BLACK, 0.07 * clamp01(3.0 - py) * inside)

        c.paint(pushed_in)
    c.paint(ring(box, radius, border))
    c.save(name)
    report(name, size=(w, h), insets=(left, top, right, bottom))


def buttons():
    control("button_normal.png", WHITE, BORDER)
    control("button_hover.png", FILL_HOVER, BORDER_HOVER)
    control("button_pressed.png", FILL_PRESSED, BORDER_PRESSED, lift=False, inner_shadow=True)
    control("button_disabled.png", FILL_DISABLED, BORDER_DISABLED, lift=False)
    control("primary_normal.png", ACCENT, ACCENT_PRESSED)
    control("primary_hover.png", ACCENT_HOVER, ACCENT)
    control("primary_pressed.png", ACCENT_PRESSED, rgb("#1d4aa6"), lift=False, inner_shadow=True)
    control("primary_disabled.png", ACCENT_DISABLED, ACCENT_DISABLED, lift=False)
    control("danger_normal.png", DANGER, DANGER_PRESSED)
    control("danger_hover.png", DANGER_HOVER, DANGER)
    control("danger_pressed.png", DANGER_PRESSED, rgb("#9c2c29"), lift=False, inner_shadow=True)
    # Toggle buttons that are on: a tinted face with an accent border.
    control("toggle_on_normal.png", ACCENT_SOFT, ACCENT)
    control("toggle_on_hover.png", ACCENT_SOFT_HOVER, ACCENT)
    control("toggle_on_pressed.png", ACCENT_SOFT_PRESSED, ACCENT_PRESSED, lift=False, inner_shadow=True)
    control("toggle_on_disabled.png", rgb("#eef2f9"), rgb("#c9d6ee"), lift=False)
    control("toggle_mixed.png", rgb("#f1f4fa"), rgb("#8fb0ef"))
    # Chips of switch buttons: a pill, filled with the accent when selected.
    pill = 13
    control("chip_off.png", WHITE, BORDER, radius=pill)
    control("chip_off_hover.png", FILL_HOVER, BORDER_HOVER, radius=pill)
    control("chip_off_pressed.png", FILL_PRESSED, BORDER_PRESSED, radius=pill, lift=False)
    control("chip_on.png", ACCENT, ACCENT_PRESSED, radius=pill)
    control("chip_on_hover.png", ACCENT_HOVER, ACCENT, radius=pill)
    control("chip_on_pressed.png", ACCENT_PRESSED, rgb("#1d4aa6"), radius=pill, lift=False)
    control("chip_disabled.png", FILL_DISABLED, BORDER_DISABLED, radius=pill, lift=False)
    control("chip_on_disabled.png", ACCENT_DISABLED, ACCENT_DISABLED, radius=pill, lift=False)
    # The close button of window headers: a cross, on a soft square under the pointer.
    cross = Canvas(10, 10, bleed=INK)
    cross.paint(stroke([(1.5, 1.5), (8.5, 8.5)], 1.6, rgb("#4d5869")))
    cross.paint(stroke([(8.5, 1.5), (1.5, 8.5)], 1.6, rgb("#4d5869")))
    cross.save("close.png")
    report("close.png", size=(10, 10))
    card_frame("close_hover.png", (rgb("#e9edf2"), 1.0), None, 6)
    card_frame("close_pressed.png", (rgb("#dbe1e8"), 1.0), None, 6)
    # Menu items: a soft highlight only under the pointer.
    card_frame("menu_hover.png", (ACCENT_SOFT, 1.0), None, 5)
    card_frame("menu_pressed.png", (ACCENT_SOFT_PRESSED, 1.0), None, 5)


def atlas(name, cell, columns, rows, draw):
    """Pictures of one size side by side, 2 transparent pixels apart, so that
    filtering never reaches a neighbour. Cell (column, row) starts at
    (2 + column * (cell + 2), 2 + row * (cell + 2))."""
    step = cell + 2
    w, h = 2 + columns * step, 2 + rows * step
    c = Canvas(w, h, bleed=BORDER)
    for row in range(rows):
        for column in range(columns):
            ox, oy = 2 + column * step, 2 + row * step
            for shade in draw(column, row, cell):
                def moved(px, py, shade=shade, ox=ox, oy=oy):
                    if not (ox <= px < ox + cell and oy <= py < oy + cell):
                        return None
                    return shade(px - ox, py - oy)
                c.paint(moved)
    c.save(name)
    report(name, size=(w, h), cell=cell, step=step, origin=2)


# Columns of the check atlases: the four interactive states.
STATE_COLUMNS = ("released", "hover", "pressed", "disabled")


def check_box(column, row, cell):
    """Rows: off, on, mixed."""
    box = (1, 1, cell - 1, cell - 1)
    radius = 4
    state = STATE_COLUMNS[column]
    if row == 0:
        fill = {"released": WHITE, "hover": rgb("#f4f8fe"), "pressed": ACCENT_SOFT, "disabled": FILL_DISABLED}[state]
        border = {"released": rgb("#98a3b3"), "hover": ACCENT, "pressed": ACCENT_PRESSED,
                  "disabled": BORDER_DISABLED}[state]
        return [filled(box, radius, fill), ring(box, radius, border, 1.25)]
    fill = {"released": ACCENT, "hover": ACCENT_HOVER, "pressed": ACCENT_PRESSED, "disabled": ACCENT_DISABLED}[state]
    shapes = [filled(box, radius, fill)]
    if row == 1:
        m = cell / 18.0
        shapes.append(stroke([(4.6 * m, 9.2 * m), (7.6 * m, 12.2 * m), (13.4 * m, 6.0 * m)], 2.2 * m, WHITE))
    else:
        shapes.append(filled((4.5, cell / 2.0 - 1.1, cell - 4.5, cell / 2.0 + 1.1), 1.1, WHITE))
    return shapes


def radio_button(column, row, cell):
    """Rows: off, on."""
    c = cell / 2.0
    state = STATE_COLUMNS[column]
    if row == 0:
        fill = {"released": WHITE, "hover": rgb("#f4f8fe"), "pressed": ACCENT_SOFT, "disabled": FILL_DISABLED}[state]
        border = {"released": rgb("#98a3b3"), "hover": ACCENT, "pressed": ACCENT_PRESSED,
                  "disabled": BORDER_DISABLED}[state]

        def outline(px, py):
            d = sd_circle(px, py, c, c, c - 1)
            return (border, coverage(d) - coverage(d + 1.25))

        return [circle(c, c, c - 1, fill), outline]
    fill = {"released": ACCENT, "hover": ACCENT_HOVER, "pressed": ACCENT_PRESSED, "disabled": ACCENT_DISABLED}[state]
    return [circle(c, c, c - 1, fill), circle(c, c, 3.4, WHITE)]

# ---------------------------------------------------------------- pictures


def logo():
    size = 40
    c = Canvas(size, size, bleed=ACCENT)
    box = (2, 2, size - 2, size - 2)
    c.paint(filled((2, 3, size - 2, size - 1), 10, BLACK, 0.18))
    c.paint(vertical_gradient(box, 10, rgb("#5b97f7"), rgb("#2350c0")))
    c.paint(stroke([(12.0, 12.5), (20.0, 28.0), (28.0, 12.5)], 4.2, WHITE))
    c.save("logo.png")
    report("logo.png", size=(size, size))


def badge(name, color, glyph):
    size = 36
    c = Canvas(size, size, bleed=color)
    c.paint(circle(18, 18, 17, color))
    for shade in glyph:
        c.paint(shade)
    c.save(name)
    report(name, size=(size, size))


def icons():
    badge("warning.png", AMBER, [stroke([(18, 9.5), (18, 20.5)], 3.8, WHITE), circle(18, 26.5, 2.3, WHITE)])
    badge("info.png", ACCENT, [circle(18, 10.5, 2.3, WHITE), stroke([(18, 16.5), (18, 26.5)], 3.8, WHITE)])
    badge("success.png", rgb("#2e9d62"), [stroke([(10.5, 18.5), (15.8, 23.8), (25.5, 13.0)], 3.8, WHITE)])


def desktop():
    """The picture behind everything, stretched to the screen: a slate
    gradient with a soft glow towards the top left. Its aspect is that of
    the gallery's screen, so filling keeps all of it."""
    w, h = 118, 80
    c = Canvas(w, h, bleed=DESKTOP_BOTTOM)

    def shade(px, py):
        t = clamp01(py / h * 0.85 + px / w * 0.15)
        color = [DESKTOP_TOP[i] + (DESKTOP_BOTTOM[i] - DESKTOP_TOP[i]) * t for i in range(3)]
        glow = 0.10 * math.exp(-((px - w * 0.28) ** 2 + (py - h * 0.05) ** 2) / (2 * (w * 0.35) ** 2))
        return (tuple(min(1.0, v + glow) for v in color), 1.0)

    c.paint(shade)
    c.save("desktop.png")
    report("desktop.png", size=(w, h))


def main():
    os.makedirs(OUT, exist_ok=True)
    window_frame("window.png", 0.45, 36)
    window_frame("dialog.png", 0.6, 36)
    card_frame("popup.png", (WHITE, 1.0), (rgb("#c9d0da"), 1.0), 8, 0.35, margins=(10, 7, 13))
    card_frame("tooltip.png", (INK, 0.96), None, 5, 0.30, margins=(4, 3, 6), blur=3.0)
    card_frame("overlay.png", (rgb("#101722"), 0.80), (WHITE, 0.12), 12)
    card_frame("card.png", (WHITE, 1.0), (LINE_SOFT, 1.0), 8)
    buttons()
    atlas("checkbox.png", 18, 4, 3, check_box)
    atlas("radio.png", 18, 4, 2, radio_button)
    logo()
    icons()
    desktop()
    for name, numbers in REPORT:
        print(name, " ".join("%s=%s" % item for item in numbers.items()))


if __name__ == "__main__":
    main()
