"""The sheets by which people judge the images: one of all images, one of the composed switches."""

import base64

import pngfile

LIGHT = "#f2f2f3"
DARK = "#000000"
WIDTH = 1720
MARGIN = 20
GAP = 12
CAPTION = 18


def enlarged(image, factor):
    """The image with every pixel as a square of `factor` pixels."""
    out = bytearray()
    for y in range(image.height):
        row = image.pixels[4 * image.width * y:4 * image.width * (y + 1)]
        wide = b"".join(bytes(row[i:i + 4]) * factor for i in range(0, len(row), 4))
        out += wide * factor
    return pngfile.Image(image.width * factor, image.height * factor, out)


def sampled(image, width, height):
    """Reduced as a painter does without smoothing: each pixel takes the one under its centre."""
    out = pngfile.Image(width, height)
    for y in range(height):
        for x in range(width):
            out.put(x, y, image.at((2 * x + 1) * image.width // (2 * width),
                                   (2 * y + 1) * image.height // (2 * height)))
    return out


def averaged(image, width, height):
    """Reduced smoothly: each pixel is the mean of what it covers."""
    def spans(size, wanted):
        for i in range(wanted):
            start, end = i * size / wanted, (i + 1) * size / wanted
            yield [(j, min(end, j + 1) - max(start, j)) for j in range(int(start), size)
                   if min(end, j + 1) > max(start, j)]
    out = pngfile.Image(width, height)
    columns = list(spans(image.width, width))
    for y, rows in enumerate(spans(image.height, height)):
        for x, cells in enumerate(columns):
            total = [0.0] * 4
            area = 0.0
            for row, high in rows:
                for column, wide in cells:
                    pixel = image.at(column, row)
                    part = high * wide
                    area += part
                    for channel in range(3):
                        total[channel] += part * pixel[channel] * pixel[3]
                    total[3] += part * pixel[3]
            if total[3]:
                out.put(x, y, [round(v / total[3]) for v in total[:3]] + [round(total[3] / area)])
    return out


# What is left of linear light where the cones of one kind are missing (Machado and others, 2009).
COLOUR_BLIND = {
    "without red cones": ((0.152286, 1.052583, -0.204868), (0.114503, 0.786281, 0.099216), (-0.003882, -0.048116, 1.051998)),
    "without green cones": ((0.367322, 0.860646, -0.227968), (0.280085, 0.672501, 0.047413), (-0.011820, 0.042940, 0.968881)),
    "without blue cones": ((1.255528, -0.076749, -0.178779), (-0.078411, 0.930809, 0.147602), (0.004733, 0.691367, 0.303900)),
}


def _linear(value):
    value /= 255
    return value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4


def _encoded(value):
    value = min(max(value, 0.0), 1.0)
    return round(255 * (12.92 * value if value <= 0.0031308 else 1.055 * value ** (1 / 2.4) - 0.055))


def colour_blind(image, matrix):
    """The image as eyes see it that lack one kind of cones."""
    seen = {}
    out = pngfile.Image(image.width, image.height)
    for y in range(image.height):
        for x in range(image.width):
            pixel = image.at(x, y)
            if pixel not in seen:
                light = [_linear(v) for v in pixel[:3]]
                seen[pixel] = [_encoded(sum(m * v for m, v in zip(row, light))) for row in matrix] + [pixel[3]]
            out.put(x, y, seen[pixel])
    return out


def grey(image):
    out = bytearray(image.pixels)
    for i in range(0, len(out), 4):
        out[i:i + 3] = bytes([(299 * out[i] + 587 * out[i + 1] + 114 * out[i + 2] + 500) // 1000]) * 3
    return pngfile.Image(image.width, image.height, out)


def over(below, above, x, y):
    """`below` with `above` laid on it; what hangs over the edge is cut off."""
    for row in range(above.height):
        for column in range(above.width):
            if not (0 <= column + x < below.width and 0 <= row + y < below.height):
                continue
            top = above.at(column, row)
            bottom = below.at(column + x, row + y)
            rest = bottom[3] * (255 - top[3]) / 255
            alpha = top[3] + rest
            if alpha:
                below.put(column + x, row + y,
                          [round((t * top[3] + b * rest) / alpha) for t, b in zip(top[:3], bottom[:3])]
                          + [round(alpha)])


def cut(image, left, width):
    """A piece of the image of its whole height."""
    out = pngfile.Image(min(width, image.width - left), image.height)
    for y in range(out.height):
        for x in range(out.width):
            out.put(x, y, image.at(left + x, y))
    return out


class Sheet:
    """An SVG document that grows downwards."""

    def __init__(self, width):
        self.width = width
        self.height = 0
        self.parts = []

    def text(self, x, y, text, colour="#202226", size=11, weight="normal"):
        self.parts.append(
            '<text x="%d" y="%d" font-family="DejaVu Sans" font-size="%d" font-weight="%s" '
            'fill="%s">%s</text>' % (x, y, size, weight, colour, text))

    def background(self, x, y, width, height, colour):
        self.parts.append('<rect x="%d" y="%d" width="%d" height="%d" fill="%s"/>'
                          % (x, y, width, height, colour))

    def image(self, x, y, image):
        data = base64.b64encode(pngfile.encode(image, filters=(0,))).decode()
        self.parts.append('<image x="%d" y="%d" width="%d" height="%d" '
                          'xlink:href="data:image/png;base64,%s"/>'
                          % (x, y, image.width, image.height, data))

    def svg(self):
        return ('<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
                'width="%d" height="%d"><rect width="100%%" height="100%%" fill="#ffffff"/>%s</svg>'
                % (self.width, self.height, "".join(self.parts))).encode()


class Panel:
    """Images on one background, placed by rows."""

    def __init__(self, background):
        self.background = background
        self.width = 2 * GAP
        self.height = GAP
        self.items = []

    def row(self, images):
        x = GAP
        for image in images:
            self.items.append((x, self.height, image))
            x += image.width + GAP
        self.width = max(self.width, x)
        self.height += max(image.height for image in images) + GAP

    def draw(self, sheet, x, y):
        sheet.background(x, y, self.width, self.height, self.background)
        for left, top, image in self.items:
            sheet.image(x + left, y + top, image)


class Flow:
    """Captioned blocks of panels, laid in lines like words."""

    def __init__(self, sheet):
        self.sheet = sheet
        self.x = MARGIN
        self.y = MARGIN
        self.line = 0

    def heading(self, text):
        self.end_line()
        self.sheet.text(MARGIN, self.y + 18, text, size=16, weight="bold")
        self.y += 30

    def end_line(self):
        if self.line:
            self.y += self.line + GAP
        self.x, self.line = MARGIN, 0
        self.sheet.height = self.y + MARGIN

    def block(self, caption, panels):
        beside = sum(panel.width for panel in panels) <= WIDTH - 2 * MARGIN
        width = (sum if beside else max)(panel.width for panel in panels)
        height = CAPTION + (max if beside else sum)(panel.height for panel in panels)
        if self.x > MARGIN and self.x + width > WIDTH - MARGIN:
            self.end_line()
        self.sheet.text(self.x, self.y + 12, caption)
        x, y = self.x, self.y + CAPTION
        for panel in panels:
            panel.draw(self.sheet, x, y)
            if beside:
                x += panel.width
            else:
                y += panel.height
        self.x += width + GAP
        self.line = max(self.line, height)


def three_sizes(image, background):
    panel = Panel(background)
    piece = (WIDTH - 2 * MARGIN - 2 * GAP) // 4
    for left in range(0, image.width, piece):
        panel.row([enlarged(cut(image, left, piece), 4)])
    pair = [enlarged(image, 2), image]
    if sum(p.width for p in pair) + 3 * GAP > WIDTH - 2 * MARGIN:
        for one in pair:
            panel.row([one])
    else:
        panel.row(pair)
    return panel


def contact_sheet(images):
    sheet = Sheet(WIDTH)
    flow = Flow(sheet)
    flow.heading("The images at four times, twice and their own size, on light and on dark background")
    for name, image in images.items():
        flow.block(name, [three_sizes(image, LIGHT), three_sizes(image, DARK)])

    leds = [p for name, p in images.items() if name.startswith("stato-LED-")]
    rows = [leds[i:i + 7] for i in range(0, len(leds), 7)]
    flow.heading("State LEDs on low tiles: 10 x 10 as the tile samples them, and smoothed")
    for background in (LIGHT, DARK, "#59595b"):
        for reduce in (sampled, averaged):
            for factor in (1, 4):
                panel = Panel(background)
                for row in rows:
                    panel.row([enlarged(reduce(led, 10, 10), factor) for led in row])
                flow.block("%s, %d x" % (reduce.__name__, factor), [panel])

    flow.heading("Without colour")
    batteries = [p for name, p in images.items() if name.startswith("batt_")]
    for background in (LIGHT, DARK):
        panel = Panel(background)
        panel.row([grey(image) for image in batteries])
        for row in rows:
            panel.row([grey(led) for led in row])
        flow.block("own size", [panel])
        panel = Panel(background)
        for row in rows:
            panel.row([enlarged(grey(led), 3) for led in row])
        flow.block("LEDs, 3 x", [panel])

    flow.heading("As colour-blind eyes see them")
    for name, matrix in COLOUR_BLIND.items():
        panel = Panel(DARK)
        panel.row([colour_blind(image, matrix) for image in batteries])
        for row in rows:
            panel.row([enlarged(colour_blind(led, matrix), 3) for led in row])
            panel.row([enlarged(colour_blind(sampled(led, 10, 10), matrix), 3) for led in row])
        flow.block(name, [panel])
    flow.end_line()
    return sheet.svg()


def slide_switch(images, disabled, revealed, knob_x):
    """SimpleSlideSwitch: the checked track cut at `revealed` over the unchecked one, then the knob."""
    suffix = "_disabled" if disabled else ""
    out = pngfile.Image(78, 27)
    over(out, images["slide_unchecked" + suffix], 0, 0)
    over(out, cut(images["slide_checked" + suffix], 0, revealed), 0, 0)
    knob = sampled(images["button_slide_disabled"], 27, 27) if disabled else images["slide_button"]
    over(out, knob, knob_x, 0)
    return out


def knob_disc():
    """The knob that SlideSwitch paints: a disc of 41 pixels with its outline."""
    radius, steps = 20.5, 4
    out = pngfile.Image(41, 41)
    for y in range(41):
        for x in range(41):
            inside = sum((x + (i + .5) / steps - radius) ** 2 + (y + (j + .5) / steps - radius) ** 2
                         <= radius ** 2 for i in range(steps) for j in range(steps))
            out.put(x, y, (65, 64, 66, round(255 * inside / steps ** 2)))
    return out


def switch_sheet(images):
    sheet = Sheet(WIDTH)
    flow = Flow(sheet)
    knob = knob_disc()
    flow.heading("SlideSwitch: the faces with the knob as the widget paints it")
    for caption, face, knob_x in (
            ("OFF", "OFF", 36), ("ON", "ON", 114),
            ("OFF, knob dragged to 80", "OFF", 60), ("ON, knob dragged to 120", "ON", 100),
            ("OFF, partly on", "OFF", 75), ("ON, partly on", "ON", 75),
            ("locked off", "LOCKED-OFF", 75), ("locked on", "LOCKED-ON", 75),
            ("disabled", "DISABLED", None)):
        composed = pngfile.Image(190, 60)
        over(composed, images["SlideSwitch-" + face], 0, 0)
        if knob_x is not None:
            # The outline, one pixel wide, reaches half a pixel beyond the ellipse.
            over(composed, knob, knob_x, 10)
        panels = []
        for background in (LIGHT, DARK):
            panel = Panel(background)
            panel.row([enlarged(composed, 2)])
            panel.row([composed, grey(composed)])
            panels.append(panel)
        flow.block(caption, panels)

    flow.heading("SimpleSlideSwitch: tracks and knob as the widget composes them")
    for disabled in (False, True):
        for caption, revealed, knob_x in (
                ("off", 0, 0), ("off after a drag", 27, 0), ("dragged to 20", 20, 7),
                ("dragged to 50", 50, 37), ("on", 51, 51)):
            composed = slide_switch(images, disabled, revealed, knob_x)
            panels = []
            for background in (LIGHT, DARK):
                panel = Panel(background)
                panel.row([enlarged(composed, 4)])
                panel.row([enlarged(composed, 2), composed])
                panels.append(panel)
            flow.block(caption + (", disabled" if disabled else ""), panels)
    flow.end_line()
    return sheet.svg()
