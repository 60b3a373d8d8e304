"""Forms of Qt Designer as pyuic compiles them and as PyQt's loader reads them."""

import importlib
import io
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import types
import unittest

QT = os.environ.get("KIVWIDGETS_QT", "5")
QtWidgets = importlib.import_module(f"PyQt{QT}.QtWidgets")
uic = importlib.import_module(f"PyQt{QT}.uic")
import kivwidgets  # noqa: E402

CLASSES = [value for value in (getattr(kivwidgets, name) for name in kivwidgets.__all__) if isinstance(value, type)]
WIDGETS = [cls for cls in CLASSES if issubclass(cls, QtWidgets.QWidget)]
FORM = pathlib.Path(__file__).resolve().parent.parent / "allwidgets.ui"
application = QtWidgets.QApplication.instance() or QtWidgets.QApplication(["test"])
# The form's images are the library's own, so the module that pyrcc would make has nothing to add.
sys.modules["images_rc"] = types.ModuleType("images_rc")

ENUMERATIONS = """<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">
 <widget class="AeroGroupbox" name="box">
  <property name="backgroudType" stdset="0"><enum>AeroGroupbox::ImageBG</enum></property></widget>
 <widget class="MetroNavdrawer" name="drawer">
  <property name="state"><enum>MetroNavdrawer::close</enum></property></widget>
 <widget class="AeroLinebar" name="bar">
  <property name="valuePosition"><enum>AeroLinebar::leftVal</enum></property></widget>
</widget><customwidgets>
 <customwidget><class>AeroGroupbox</class><extends>QGroupBox</extends>
  <header>KivWidgets/aerogroupbox.h</header></customwidget>
 <customwidget><class>MetroNavdrawer</class><extends>QGroupBox</extends>
  <header>KivWidgets/metronavdrawer.h</header></customwidget>
 <customwidget><class>AeroLinebar</class><extends>QWidget</extends>
  <header>KivWidgets/aerolinebar.h</header></customwidget>
</customwidgets></ui>"""


def form_of(classes):
    """A form with one widget of each class, as Qt Designer writes it."""
    widgets = "".join(f'<widget class="{cls.__name__}" name="{cls.__name__.lower()}"/>' for cls in classes)
    custom = "".join(
        f"<customwidget><class>{cls.__name__}</class>"
        f"<extends>{next(base.__name__ for base in cls.__mro__ if base.__module__.startswith('PyQt'))}</extends>"
        f"<header>KivWidgets/{cls.__name__.lower()}.h</header></customwidget>" for cls in classes)
    return (f'<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">{widgets}</widget>'
            f"<customwidgets>{custom}</customwidgets></ui>")


class Forms(unittest.TestCase):
    def check(self, form):
        """The form has its widgets with the classes and properties that it names."""
        named = set(re.findall(r'<widget class="(\w+)"', FORM.read_text(encoding="utf-8")))
        classes = {cls for cls in WIDGETS if cls.__name__ in named}
        self.assertGreater(len(classes), 10)
        self.assertEqual({type(child) for child in form.findChildren(QtWidgets.QWidget)} & set(WIDGETS), classes)
        self.assertEqual(form.findChild(kivwidgets.MetroCirclerate).getLabel(), "Load")
        self.assertEqual(form.findChild(kivwidgets.MetroCirclerate).getValue(), 42.5)
        self.assertEqual(form.findChild(kivwidgets.AeroLinebar).getValuePosition(), kivwidgets.AeroLinebar.CenterVal)
        self.assertTrue(form.findChild(kivwidgets.AeroSwitch).isChecked())
        form.grab()

    def compiled(self, path):
        """What the program pyuic makes of a form, as a widget."""
        code = subprocess.run([f"pyuic{QT}", str(path)], check=True, capture_output=True, text=True).stdout
        scope = {}
        exec(code, scope)
        form = QtWidgets.QWidget()
        scope["Ui_" + re.search(r"class Ui_(\w+)", code).group(1)]().setupUi(form)
        return form

    def test_compiled(self):
        self.check(self.compiled(FORM))

    def test_loaded(self):
        self.check(uic.loadUi(str(FORM)))

    def test_every_class(self):
        with tempfile.TemporaryDirectory() as directory:
            path = pathlib.Path(directory) / "form.ui"
            path.write_text(form_of(WIDGETS), encoding="utf-8")
            for form in (self.compiled(path), uic.loadUi(str(path))):
                self.assertEqual({type(child) for child in form.findChildren(QtWidgets.QWidget)} & set(WIDGETS),
                                 set(WIDGETS))

    def test_enumerations(self):
        form = uic.loadUi(io.StringIO(ENUMERATIONS))
        self.assertEqual(form.box.getBackgroudType(), kivwidgets.AeroGroupbox.ImageBG)
        self.assertEqual(form.drawer.getState(), kivwidgets.MetroNavdrawer.close)
        self.assertEqual(form.bar.getValuePosition(), kivwidgets.AeroLinebar.leftVal)

    def test_modules_of_the_headers(self):
        for cls in CLASSES:
            module = importlib.import_module(f"KivWidgets.{cls.__name__.lower()}")
            self.assertIs(getattr(module, cls.__name__), cls)


if __name__ == "__main__":
    unittest.main()
