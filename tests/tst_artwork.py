#!/usr/bin/env python3
"""The script that renders the images: what it finds, what it refuses, and that the masters take
their colours from the one table."""

import contextlib
import functools
import importlib.machinery
import importlib.util
import io
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

sys.dont_write_bytecode = True
ARTWORK = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "artwork")
IMAGES = os.path.join(ARTWORK, "..", "KivWidgets", "Images")
SCRIPT = os.path.join(ARTWORK, "render")
sys.path[:0] = [ARTWORK, os.path.join(ARTWORK, "..", "tools")]
import pngfile

loader = importlib.machinery.SourceFileLoader("render", SCRIPT)
render = importlib.util.module_from_spec(importlib.util.spec_from_loader("render", loader))
loader.exec_module(render)


def run(*arguments):
    return subprocess.run([SCRIPT, *arguments], capture_output=True, text=True, check=False)


# A few images of each kind. That all of them are what their masters render to is checked beside.
CHECKED = {name: drawing for name, drawing in render.drawings().items()
           if name in ("batt_ok", "batt_none", "stato-LED-OK-ON", "stato-LED-FAULT-ON",
                       "fasciasuperiore", "slide_button", "button_slide_disabled")}

# Nothing changes a rendered image, so one rendering of each serves all checks.
render_once = functools.lru_cache(maxsize=None)(render.render)


def run_here(*arguments):
    """The same within this process, for the checked images alone."""
    out, err = io.StringIO(), io.StringIO()
    with mock.patch.object(sys, "argv", [SCRIPT, *arguments]), \
            mock.patch.object(render, "render", render_once), \
            mock.patch.object(render, "drawings", lambda: CHECKED), \
            contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
        code = render.main()
    return subprocess.CompletedProcess(arguments, code, out.getvalue(), err.getvalue())


class Check(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)
        self.copy = os.path.join(self.directory, "Images")
        for scale in ("", "2x", "3x"):
            os.mkdir(self.copy + scale)
            for name in CHECKED:
                shutil.copy(os.path.join(IMAGES + scale, name + ".png"), self.copy + scale)

    def path(self, name):
        return os.path.join(self.copy, name)

    def faults(self, *scales):
        scales = scales or ("1",)
        done = run_here("--check", self.copy, "--scales", *scales)
        faults = done.stderr.splitlines()
        self.assertEqual(done.returncode, 1 if faults else 0)
        self.assertIn("%d images compared" % (len(CHECKED) * len(scales)), done.stdout)
        return faults

    def test_untouched_copy(self):
        self.assertEqual(self.faults(), [])

    def test_rendering_makes_the_committed_images(self):
        fresh = os.path.join(self.directory, "fresh")
        record = os.path.join(ARTWORK, "renderer-version")
        before = os.stat(record).st_mtime_ns
        self.assertEqual(run_here("--output", fresh, "--scales", "1", "2").returncode, 0)
        for scale in ("", "2x"):
            self.assertEqual(sorted(os.listdir(fresh + scale)),
                             sorted(os.listdir(self.copy + scale)))
        done = run_here("--check", fresh, "--scales", "1", "2")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(os.stat(record).st_mtime_ns, before)

    def test_missing_image(self):
        os.remove(self.path("batt_ok.png"))
        self.assertEqual(self.faults(), ["batt_ok.png is missing"])

    def test_larger_images(self):
        shutil.copy(self.path("batt_ok.png"), self.copy + "2x")
        os.remove(os.path.join(self.copy + "3x", "batt_none.png"))
        self.assertEqual(self.faults("2", "3"), ["at 2x: batt_ok.png is 72 x 72, not 144 x 144",
                                                 "at 3x: batt_none.png is missing"])

    def test_another_pixel(self):
        image = pngfile.read(self.path("stato-LED-OK-ON.png"))
        red, green, blue, alpha = image.at(10, 3)
        image.put(10, 3, (red, green, blue - 100, alpha))
        pngfile.write(image, self.path("stato-LED-OK-ON.png"))
        fault, = self.faults()
        self.assertTrue(fault.startswith("stato-LED-OK-ON.png differs from its masters"), fault)

    def test_lost_alpha_channel(self):
        image = pngfile.read(self.path("fasciasuperiore.png"))
        image.colour_type = pngfile.RGB
        pngfile.write(image, self.path("fasciasuperiore.png"))
        self.assertEqual(self.faults(), ["fasciasuperiore.png has colour type 2, not 6"])

    def test_another_size(self):
        shutil.copy(self.path("slide_button.png"), self.path("button_slide_disabled.png"))
        self.assertEqual(self.faults(), ["button_slide_disabled.png is 27 x 27, not 28 x 28"])

    def test_broken_files(self):
        with open(self.path("batt_ok.png"), "wb") as file:
            file.write(b"no image")
        with open(self.path("batt_none.png"), "r+b") as file:
            file.truncate(200)
        faults = self.faults()
        self.assertEqual(len(faults), 2)
        for fault in faults:
            self.assertIn("cannot be read", fault)

    def test_image_without_a_master(self):
        shutil.copy(self.path("batt_ok.png"), self.path("batt_new.png"))
        self.assertEqual(self.faults(), ["batt_new.png has no master"])

    def test_missing_directory(self):
        done = run("--check", os.path.join(self.directory, "nowhere"), "--scales", "1")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 43)


class Tolerance(unittest.TestCase):
    """With another renderer: a slightly different edge passes, a different drawing does not."""

    def setUp(self):
        self.stored = pngfile.read(os.path.join(IMAGES, "stato-LED-OK-ON.png"))

    def test_slightly_different_edge(self):
        fresh = pngfile.Image(21, 21, bytearray(self.stored.pixels))
        for offset in range(3, len(fresh.pixels), 4):
            if 0 < fresh.pixels[offset] < 250:
                fresh.pixels[offset] += 5
        self.assertNotEqual(fresh.pixels, self.stored.pixels)
        self.assertIsNotNone(render.difference(fresh, self.stored, True))
        self.assertIsNone(render.difference(fresh, self.stored, False))

    def test_another_drawing(self):
        for other in ("stato-LED-OK-Stand-by", "stato-LED-OK-BatteryWorking", "stato-LED-WARNING-ON"):
            fresh = pngfile.read(os.path.join(IMAGES, other + ".png"))
            self.assertIsNotNone(render.difference(fresh, self.stored, False), other)

    def test_no_two_images_pass_for_each_other(self):
        images = [(name, pngfile.read(os.path.join(IMAGES, name + ".png")))
                    for name in render.drawings()]
        for i, (name, image) in enumerate(images):
            for other, another in images[:i]:
                self.assertIsNotNone(render.difference(image, another, False), (name, other))


class CommandLine(unittest.TestCase):
    def test_wrong_options(self):
        for arguments in (["--wrong"], ["image"], ["--sheet"], ["--check", "a", "b"],
                          ["--check", "--sheet", "file"], ["--chec"],
                          ["--scales", "4"], ["--scales"]):
            done = run(*arguments)
            self.assertEqual(done.returncode, 2, arguments)
            self.assertEqual(done.stdout, "")
            self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)

    def test_help(self):
        done = run("--help")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for option in ("--check", "--output", "--scales", "--sheet", "--switch-sheet"):
            self.assertIn(option, done.stdout)

    def test_sheet(self):
        with tempfile.TemporaryDirectory() as directory:
            sheet = os.path.join(directory, "sheet.png")
            self.assertEqual(run("--switch-sheet", sheet).returncode, 0)
            with open(sheet, "rb") as file:
                header = file.read(24)
            self.assertEqual(header[:8], pngfile.SIGNATURE)
            self.assertGreater(int.from_bytes(header[20:24], "big"), 1000)

    def test_sheet_that_cannot_be_written(self):
        done = run("--switch-sheet", "/nowhere/sheet.png")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)


class Sheets(unittest.TestCase):
    def images(self):
        return {name: pngfile.read(os.path.join(IMAGES, name + ".png"))
                for name in render.drawings() if "slide" in name}

    def test_composed_slide_switch(self):
        images = self.images()
        off = render.sheets.slide_switch(images, False, 0, 0)
        half = render.sheets.slide_switch(images, False, 40, 27)
        on = render.sheets.slide_switch(images, False, 51, 51)
        self.assertEqual(off.at(60, 13), (167, 167, 167, 255))
        self.assertEqual([half.at(x, 13) for x in (20, 60)],
                         [(0, 174, 240, 255), (167, 167, 167, 255)])
        self.assertEqual(on.at(20, 13), (0, 174, 240, 255))
        self.assertEqual(off.at(5, 13), on.at(56, 13))

    def test_reduced_led(self):
        led = pngfile.read(os.path.join(IMAGES, "stato-LED-FAULT-ON.png"))
        small = render.sheets.sampled(led, 10, 10)
        for y in range(10):
            for x in range(10):
                self.assertEqual(small.at(x, y), led.at(2 * x + 1, 2 * y + 1))

    def test_smoothed_led(self):
        plain = pngfile.Image(21, 21, bytearray((10, 20, 30, 200)) * 441)
        smooth = render.sheets.averaged(plain, 10, 10)
        self.assertEqual({smooth.at(x, y) for x in range(10) for y in range(10)}, {(10, 20, 30, 200)})


class Masters(unittest.TestCase):
    def masters(self):
        directory = os.path.join(ARTWORK, "masters")
        for name in sorted(os.listdir(directory)):
            with open(os.path.join(directory, name), encoding="utf-8") as file:
                yield name, file.read()

    def test_each_is_used(self):
        used = {layer.master + ".svg" for drawing in render.drawings().values()
                for layer in drawing.layers}
        self.assertEqual({name for name, _ in self.masters()}, used)

    def test_colours_come_from_the_table(self):
        with open(os.path.join(ARTWORK, "colours.css"), encoding="utf-8") as file:
            classes = set(re.findall(r"\.([a-z][a-z-]*)", file.read()))
        for name, text in self.masters():
            self.assertNotRegex(text, r"rgb|#[0-9a-fA-F]{3}(?![a-z])", name)
            for attribute in re.findall(r'class="([^"]*)"', text):
                self.assertLessEqual(set(attribute.split()), classes, name)

    def test_identifiers_are_unlike(self):
        identifiers = [identifier for _, text in self.masters()
                       for identifier in re.findall(r' id="([^"]*)"', text)]
        self.assertEqual(len(identifiers), len(set(identifiers)))


class Files(unittest.TestCase):
    def test_read_is_what_was_written(self):
        image = pngfile.Image(7, 5, bytearray((37 * i * i + 11 * i) % 256 for i in range(140)))
        for filters in (range(5), (0,), (1,), (2,), (3,), (4,)):
            back = pngfile.decode(pngfile.encode(image, filters))
            self.assertEqual((back.width, back.height, back.colour_type), (7, 5, pngfile.RGBA))
            self.assertEqual(back.pixels, image.pixels)


if __name__ == "__main__":
    unittest.main()
