"""The bindings: construction, properties, signals, states, painting, lifetime and errors of all classes."""

import enum
import gc
import importlib
import os
import pathlib
import re
import sys
import threading
import unittest

QT = os.environ.get("KIVWIDGETS_QT", "5")
QtCore, QtGui, QtWidgets = (importlib.import_module(f"PyQt{QT}.Qt{part}")
                            for part in ("Core", "Gui", "Widgets"))
sip = importlib.import_module(f"PyQt{QT}.sip")
import kivwidgets  # noqa: E402

SOURCES = pathlib.Path(__file__).resolve().parent.parent.parent / "KivWidgets"
application = QtWidgets.QApplication.instance() or QtWidgets.QApplication(["test"])


def properties():
    """What the headers declare: (class, type, name, getter, setter)."""
    found = []
    for header in sorted(SOURCES.glob("*.h")):
        scope = None
        for line in re.sub(r"\n +DESIGNABLE", " DESIGNABLE", header.read_text()).splitlines():
            if started := re.match(r"class KIVWIDGETS_EXPORT (\w+)", line):
                scope = started.group(1)
            if held := re.match(r" +Q_PROPERTY\((\w+) (\w+) READ (\w+) WRITE (\w+)", line):
                found.append((getattr(kivwidgets, scope), *held.groups()))
    return found


ALL = {name: getattr(kivwidgets, name) for name in kivwidgets.__all__}
CLASSES = sorted((value for value in ALL.values()
                  if isinstance(value, type) and issubclass(value, QtWidgets.QWidget)), key=lambda cls: cls.__name__)
AERO = [cls for cls in CLASSES if issubclass(cls, kivwidgets.AeroStyle)]
METRO = [cls for cls in CLASSES if issubclass(cls, kivwidgets.MetroStyle)]
PROPERTIES = properties()


def other(kind, value):
    """A value of a property's type that differs from this one."""
    if isinstance(value, enum.Enum):
        return next(member for member in type(value) if member != value)
    if isinstance(value, bool):
        return not value
    if isinstance(value, (int, float)):
        return value + 1
    if isinstance(value, str):
        return "%.1f V"
    if isinstance(value, QtGui.QColor):
        return QtGui.QColor(12, 34, 56)
    if isinstance(value, QtCore.QPoint):
        return QtCore.QPoint(3, -4)
    if isinstance(value, QtGui.QPixmap):
        pixmap = QtGui.QPixmap(61, 43)
        pixmap.fill(QtGui.QColor(12, 34, 56))
        return pixmap
    raise AssertionError(f"no other value of type {kind}")


def comparable(value):
    if isinstance(value, QtGui.QPixmap):
        return value.toImage()
    return value


def colours(widget):
    """The colours of the widget's pixels."""
    image = widget.grab().toImage()
    return {image.pixelColor(x, y).name() for x in range(image.width()) for y in range(image.height())}


def deliver():
    application.sendPostedEvents()
    application.processEvents()


class BindingsTest(unittest.TestCase):
    """Restores the hook of unhandled exceptions, and deletes what a test leaves."""

    def setUp(self):
        self.unhandled = []
        hook = sys.excepthook
        self.addCleanup(setattr, sys, "excepthook", hook)
        sys.excepthook = lambda kind, value, trace: self.unhandled.append(value)

    def tearDown(self):
        self.assertEqual(self.unhandled, [])
        gc.collect()


class Classes(BindingsTest):
    def test_all_are_there(self):
        headers = {match.group(1) for header in SOURCES.glob("*.h") if not header.name.endswith("_p.h")
                   for match in re.finditer(r"^(?:class KIVWIDGETS_EXPORT|struct) (\w+)", header.read_text(), re.M)}
        self.assertEqual({name for name, value in ALL.items() if isinstance(value, type)}, headers)
        self.assertEqual(ALL.keys() - headers, {"KIVWIDGETS_VERSION", "kivWidgetsVersion"})
        self.assertLessEqual(ALL.keys() | {"__all__", "__version__"}, set(dir(kivwidgets)))
        self.assertGreaterEqual(len(CLASSES), 18)
        self.assertGreaterEqual(min(len(AERO), len(METRO)), 5)

    def test_version(self):
        header = (SOURCES / "kivglobal.h").read_text()
        parts = [int(re.search(rf"#define KIVWIDGETS_VERSION_{part} (\d+)", header).group(1))
                 for part in ("MAJOR", "MINOR", "PATCH")]
        self.assertEqual(kivwidgets.__version__, "{}.{}.{}".format(*parts))
        number = parts[0] << 16 | parts[1] << 8 | parts[2]
        self.assertEqual((kivwidgets.KIVWIDGETS_VERSION, kivwidgets.kivWidgetsVersion()), (number, number))
        with self.assertRaises(TypeError):
            kivwidgets.kivWidgetsVersion(1)

    def test_construct(self):
        parent = QtWidgets.QWidget()
        for cls in CLASSES:
            with self.subTest(cls.__name__):
                self.assertIsNone(cls().parent())
                self.assertIs(cls(parent).parent(), parent)
                widget = cls(parent=parent)
                self.assertIs(widget.parent(), parent)
                self.assertEqual(widget.metaObject().className(), cls.__name__)
                with self.assertRaises(TypeError):
                    cls(cls())(widget)

    def test_bases(self):
        for cls in CLASSES:
            superclass = cls.staticMetaObject.superClass().className()
            self.assertIn(superclass, [base.__name__ for base in cls.__bases__])

    def test_no_copies(self):
        for cls in [*CLASSES, kivwidgets.AeroStyle, kivwidgets.MetroStyle]:
            if cls in CLASSES:
                widget = cls()
                self.assertIs(cls(widget).parent(), widget)
        style = kivwidgets.MetroStyle(QtCore.QObject())
        with self.assertRaises(TypeError):
            kivwidgets.MetroStyle(style)

    def test_found_children_have_their_class(self):
        parent = QtWidgets.QWidget()
        for cls in CLASSES:
            cls(parent).setObjectName(cls.__name__)
        gc.collect()
        for cls in CLASSES:
            self.assertIs(type(parent.findChild(QtWidgets.QWidget, cls.__name__)), cls)

    def test_doc_strings(self):
        for cls in CLASSES:
            self.assertGreater(len(cls.__doc__), 100, cls.__name__)
        self.assertIn("dial gauge", kivwidgets.MetroCirclerate.__doc__)
        self.assertIn("KIVWIDGETS_VERSION of the library", kivwidgets.kivWidgetsVersion.__doc__)
        text = kivwidgets.MetroCirclerate.setValue.__doc__
        self.assertTrue(text.startswith("setValue(self, value: float)\n"), text)
        self.assertIn("Default: 35.0", text)
        self.assertIn("Default: (0, 174, 240)", kivwidgets.MetroCirclerate.setCursor.__doc__)
        for cls, _, _, getter, setter in PROPERTIES:
            for method in (getter, setter):
                self.assertIn("\n", getattr(cls, method).__doc__, f"{cls.__name__}.{method}")

    def test_stub(self):
        module = sys.modules[kivwidgets.MetroCirclerate.__module__]
        stub = pathlib.Path(module.__file__).with_name(f"qt{QT}.pyi").read_text()
        compile(stub, "stub", "exec")
        for cls in CLASSES:
            self.assertRegex(stub, rf"class {cls.__name__}\(.*\):\n    \"\"\"")
        self.assertIn('def setValue(self, value: float) -> None:\n        """The value shown.', stub)
        self.assertIn('def kivWidgetsVersion() -> int:\n    """The KIVWIDGETS_VERSION of the library', stub)
        self.assertRegex(stub, r"(?m)^KIVWIDGETS_VERSION = \.\.\. # type: int$")
        self.assertTrue(pathlib.Path(module.__file__).with_name("py.typed").exists())


class Properties(BindingsTest):
    def test_written_and_read(self):
        self.assertEqual(len(PROPERTIES),
                         sum(cls.staticMetaObject.propertyCount() - cls.staticMetaObject.propertyOffset()
                             for cls in CLASSES))
        for cls, kind, name, getter, setter in PROPERTIES:
            with self.subTest(f"{cls.__name__}.{name}"):
                widget = cls()
                value = other(kind, getattr(widget, getter)())
                self.assertIsNone(getattr(widget, setter)(value))
                self.assertEqual(comparable(getattr(widget, getter)()), comparable(value))
                self.assertEqual(comparable(widget.property(name)), comparable(value))

    def test_through_set_property(self):
        for cls, kind, name, getter, _ in PROPERTIES:
            with self.subTest(f"{cls.__name__}.{name}"):
                widget = cls()
                value = other(kind, getattr(widget, getter)())
                self.assertTrue(widget.setProperty(name, value))
                self.assertEqual(comparable(getattr(widget, getter)()), comparable(value))

    def test_wrong_types(self):
        for cls, _, name, _, setter in PROPERTIES:
            with self.subTest(f"{cls.__name__}.{setter}"):
                widget = cls()
                with self.assertRaises(TypeError) as caught:
                    getattr(widget, setter)(object())
                named = re.match(rf"{setter}\(self, (\w+): [^)]+\): argument 1 has unexpected type 'object'$",
                                 str(caught.exception))
                self.assertIsNotNone(named, str(caught.exception))
                with self.assertRaisesRegex(TypeError, f"argument '{named.group(1)}' has unexpected type 'object'"):
                    getattr(widget, setter)(**{named.group(1): object()})

    def test_enumerations(self):
        for kind, names in ((kivwidgets.AeroGroupbox.typeBG, "ImageBG AeroStyleBG"),
                            (kivwidgets.AeroLinebar.ValPos, "NoVal CenterVal leftVal rightVal"),
                            (kivwidgets.MetroNavdrawer.state_E, "close open"),
                            (kivwidgets.MetroStyle.AlarmState,
                             "CommunicationLost None_ Warning Anomaly Fault Locked"),
                            (kivwidgets.MetroStyle.OperatingState, "Unknown StandBy Precharge Calibration "
                             "WaitBatteryVoltage On OnBattery OnBypass")):
            self.assertTrue(issubclass(kind, enum.IntEnum))
            self.assertEqual({member.name: member.value for member in kind},
                             dict(zip(names.split(), range(20))))
        # As forms write them.
        self.assertIs(kivwidgets.AeroGroupbox.ImageBG, kivwidgets.AeroGroupbox.typeBG.ImageBG)
        self.assertIs(kivwidgets.MetroNavdrawer.open, kivwidgets.MetroNavdrawer.state_E.open)

    def test_every_base_method(self):
        bar = kivwidgets.AeroLinebar()
        bar.setText("12 V")
        self.assertEqual(bar.getText(), "12 V")
        bar.SplitArea()
        self.assertEqual(kivwidgets.MetroCirclerate().val2angle(0.0), 200 * 16)
        self.assertEqual(kivwidgets.MetroBattIcon().getBackGroundSize(), QtCore.QSize(72, 72))
        button = kivwidgets.AeroButton()
        button.setAeroProperty(QtGui.QColor("red"), None)
        self.assertEqual(button.getColor(), QtGui.QColor("red"))


class Signals(BindingsTest):
    def test_every_signal_connects(self):
        signal_type = QtCore.QMetaMethod.MethodType.Signal if QT == "6" else QtCore.QMetaMethod.Signal
        for cls in CLASSES:
            widget = cls()
            meta = widget.metaObject()
            names = {bytes(meta.method(i).name()).decode() for i in range(meta.methodCount())
                     if meta.method(i).methodType() == signal_type}
            self.assertIn("destroyed", names)
            for name in sorted(names):
                with self.subTest(f"{cls.__name__}.{name}"):
                    signal = getattr(widget, name)
                    signal.connect(self.fail)
                    signal.disconnect(self.fail)

    def test_emitted(self):
        for cls in CLASSES:
            if not issubclass(cls, QtWidgets.QAbstractButton):
                continue
            with self.subTest(cls.__name__):
                seen = []
                button = cls()
                button.setCheckable(True)
                button.toggled.connect(seen.append)
                button.clicked.connect(lambda checked, seen=seen: seen.append("clicked"))
                button.click()
                self.assertEqual(seen, [True, "clicked"])

    def test_pointer(self):
        for cls in (kivwidgets.TranspButton, kivwidgets.MetroSysIcon):
            seen = []
            button = cls()
            button.mouseEnter.connect(lambda seen=seen: seen.append("enter"))
            button.mouseLeave.connect(lambda seen=seen: seen.append("leave"))
            point = QtCore.QPointF(1, 1)
            application.sendEvent(button, QtGui.QEnterEvent(point, point, point))
            application.sendEvent(button, QtCore.QEvent(QtCore.QEvent.Type.Leave))
            self.assertEqual(seen, ["enter", "leave"])

    def test_exception_in_a_slot(self):
        button = kivwidgets.AeroButton()

        def slot():
            raise LookupError("of the slot")

        button.clicked.connect(slot)
        button.click()
        self.assertEqual([str(error) for error in self.unhandled], ["of the slot"])
        self.unhandled.clear()

    def test_pages(self):
        pages = kivwidgets.RotateStackedWidget()
        for _ in range(3):
            pages.addWidget(QtWidgets.QWidget())
        seen = []
        pages.currentChanged.connect(seen.append)
        pages.setCurrentIndex(2)
        self.assertEqual((seen, pages.currentIndex()), ([2], 2))


class States(BindingsTest):
    def test_pairs(self):
        for cls in METRO:
            widget = cls()
            set_state = widget.setState if cls is not kivwidgets.MetroNavdrawer else (
                lambda state, widget=widget: kivwidgets.MetroStyle.setState(widget, state))
            self.assertEqual(widget.getElementState(), (1, 0))
            for alarm in range(6):
                for operation in range(8):
                    set_state((alarm, operation))
                    self.assertEqual(tuple(widget.getElementState()), (alarm, operation))
            set_state([2, 3])
            self.assertEqual(widget.getElementState(), kivwidgets.elemDesc_t(2, 3))
            set_state((cls.AlarmState.Fault, cls.OperatingState.OnBypass))
            self.assertEqual(widget.getElementState(), (4, 7))

    def test_colours(self):
        tile = kivwidgets.MetroSysIcon()
        tile.resize(36, 36)
        for state, index in (((1, 0), 4), ((1, 5), 1), ((1, 6), 2), ((1, 7), 3), ((0, 5), 4), ((2, 5), 5),
                             ((3, 5), 5), ((4, 5), 6), ((5, 5), 6)):
            tile.setState(state)
            deliver()
            self.assertEqual(tile.getColorIdx(), index, state)
            self.assertIn(kivwidgets.MetroStyle.COLORTAB[index].name(), colours(tile), state)
        self.assertEqual(len(kivwidgets.MetroStyle.COLORTAB), 7)

    def test_record(self):
        state = kivwidgets.elemDesc_t(1, 6)
        self.assertEqual((state.alarmSt, state.elemSt), (1, 6))
        state.elemSt = 7
        state.alarmSt = kivwidgets.MetroStyle.AlarmState.Warning
        self.assertEqual(repr(state), "elemDesc_t(2, 7)")
        self.assertTrue(state == (2, 7) and state != (2, 6) and state != "2, 7")
        self.assertEqual((len(state), state[0], state[-1]), (2, 2, 7))
        with self.assertRaises(IndexError):
            state[2]
        copy = kivwidgets.elemDesc_t(state)
        copy.elemSt = 1
        self.assertEqual(state.elemSt, 7)

    def test_wrong_states(self):
        tile = kivwidgets.MetroShelter()
        for wrong in (None, 5, "16", (1,), (1, 2, 3), (1, "6"), (1.0, 6), {1: 6}):
            with self.assertRaisesRegex(TypeError, r"setState\(self, st: .*\): argument 1 has unexpected type"):
                tile.setState(wrong)
        with self.assertRaisesRegex(ValueError, "elemSt is 0 to 255, not 256"):
            tile.setState((1, 256))
        with self.assertRaisesRegex(ValueError, "alarmSt is 0 to 255, not -1"):
            tile.setState((-1, 0))
        with self.assertRaisesRegex(ValueError, "elemSt is 0 to 255, not"):
            tile.setState((1, 2**80))
        with self.assertRaisesRegex(TypeError, "elemSt is an int or a MetroStyle.OperatingState, not 'on'"):
            kivwidgets.elemDesc_t(1, "on")
        with self.assertRaisesRegex(TypeError, "alarmSt is an int"):
            kivwidgets.elemDesc_t(1, 1).alarmSt = None
        self.assertEqual(tile.getElementState(), (1, 0))

    def test_from_another_thread(self):
        painted = []

        class Tile(kivwidgets.MetroShelter):
            def paintText(self, painter):
                super().paintText(painter)
                painted.append(self.getElementState().elemSt)

        tile = Tile()
        tile.resize(100, 40)
        tile.show()
        self.addCleanup(tile.hide)

        def set_states():
            for number in range(4000):
                tile.setState((1, number % 8))
            tile.setState((1, 5))

        thread = threading.Thread(target=set_states)
        thread.start()
        while thread.is_alive():
            application.processEvents()
        thread.join()
        deliver()
        self.assertEqual(painted[-1], 5)


class Painting(BindingsTest):
    STEPS = {"AeroButton": "paintText", "AeroSwitch": "paintText", "MetroShelter": "paintText",
             "MetroBattIcon": "paintIcon", "MetroSysIcon": "paintIcon"}

    def test_overridden_step(self):
        for name, step in self.STEPS.items():
            with self.subTest(name):
                def paint(self, painter):
                    painter.setOpacity(1.0)
                    painter.fillRect(4, 4, 5, 5, QtGui.QColor("#fe01dc"))

                widget = type("Own" + name, (getattr(kivwidgets, name),), {step: paint})()
                widget.resize(72, 72)
                self.assertIn("#fe01dc", colours(widget))
                self.assertNotIn("#fe01dc", colours(getattr(kivwidgets, name)()))

    def test_step_of_the_base(self):
        def texts_of(cls):
            button = cls()
            button.resize(120, 40)
            button.setText("Start")
            return button.grab().toImage()

        class Same(kivwidgets.AeroButton):
            def paintText(self, painter):
                super().paintText(painter)

        self.assertEqual(texts_of(Same), texts_of(kivwidgets.AeroButton))

    def test_exception_in_a_step(self):
        class Failing(kivwidgets.AeroButton):
            def paintText(self, painter):
                raise LookupError("of the step")

        button = Failing()
        button.resize(120, 40)
        button.grab()
        self.assertEqual([str(error) for error in self.unhandled], ["of the step"])
        self.unhandled.clear()

    def test_overridden_handlers(self):
        for cls in CLASSES:
            with self.subTest(cls.__name__):
                seen = []

                class Own(cls):
                    def event(self, event):
                        seen.append(event.type())
                        return super().event(event)

                    def paintEvent(self, event):
                        seen.append("paint")
                        super().paintEvent(event)

                widget = Own()
                widget.resize(80, 60)
                widget.grab()
                self.assertIn("paint", seen)
                self.assertIn(QtCore.QEvent.Type.Paint, seen)
                for handler in {"event", "paintEvent"} & vars(cls).keys():
                    with self.assertRaisesRegex(TypeError, "unexpected type 'NoneType'"):
                        getattr(cls, handler)(widget, None)

    def test_aero_style_of_its_own(self):
        class Panel(QtWidgets.QWidget):
            def __init__(self):
                super().__init__()
                self.style = kivwidgets.AeroStyle(self)
                self.requests = 0

            def event(self, event):
                self.requests += event.type() == QtCore.QEvent.Type.UpdateRequest
                return super().event(event)

            def paintEvent(self, event):
                colour = QtGui.QColor("#2040c0")
                self.style.paintBase(QtGui.QPainter(self), colour, colour, colour, self.rect())

        panel = Panel()
        panel.resize(60, 40)
        self.assertIn("#2040c0", colours(panel))
        panel.style.setRoundness(50)
        deliver()
        self.assertEqual(panel.requests, 1)
        with self.assertRaises(TypeError):
            panel.style.paintBase(None, QtGui.QColor(), QtGui.QColor(), QtGui.QColor(), QtCore.QRect())

    def test_style_outlives_its_owner(self):
        for style_type, change in ((kivwidgets.AeroStyle, lambda style: style.setWidthPen(7)),
                                   (kivwidgets.MetroStyle, lambda style: style.setState((4, 5))),
                                   (kivwidgets.MetroBattTemplate, lambda style: style.setState((4, 5)))):
            owner = QtWidgets.QWidget()
            style = style_type(owner)
            sip.delete(owner)
            change(style)
            deliver()
            owner = QtWidgets.QWidget()
            style = style_type(owner)
            del style
            gc.collect()
            sip.delete(owner)


class Lifetime(BindingsTest):
    def test_parent_first(self):
        for cls in CLASSES:
            parent = QtWidgets.QWidget()
            child = cls(parent)
            sip.delete(parent)
            self.assertTrue(sip.isdeleted(child), cls.__name__)
            with self.assertRaisesRegex(RuntimeError, "has been deleted"):
                child.update()

    def test_child_first(self):
        for cls in CLASSES:
            parent = QtWidgets.QWidget()
            child = cls(parent)
            sip.delete(child)
            self.assertEqual(parent.children(), [], cls.__name__)
            del child
            sip.delete(parent)

    def test_parent_keeps_its_children(self):
        for cls in CLASSES:
            parent = QtWidgets.QWidget()
            cls(parent)
            gc.collect()
            self.assertEqual([type(child) for child in parent.children()], [cls])

    def test_python_owns_what_has_no_parent(self):
        for cls in CLASSES:
            gone = []
            widget = cls()
            widget.destroyed.connect(lambda *_, gone=gone: gone.append(True))
            del widget
            gc.collect()
            self.assertEqual(gone, [True], cls.__name__)

    def test_deleted_in_a_slot(self):
        for cls in (kivwidgets.AeroButton, kivwidgets.MetroShelter, kivwidgets.TranspButton):
            button = cls()
            button.clicked.connect(lambda checked=False, button=button: sip.delete(button))
            button.click()
            self.assertTrue(sip.isdeleted(button))

    def test_counts_stay_flat(self):
        colour, pixmap, pair = QtGui.QColor("red"), QtGui.QPixmap(4, 4), (1, 6)

        def use(count):
            parent = QtWidgets.QWidget()
            for number in range(count):
                cls = CLASSES[number % len(CLASSES)]
                widget = cls(parent if number % 2 else None)
                if isinstance(widget, kivwidgets.AeroStyle):
                    widget.setColor(colour)
                if isinstance(widget, kivwidgets.MetroStyle):
                    kivwidgets.MetroStyle.setState(widget, pair)
                    widget.getElementState()
                if isinstance(widget, kivwidgets.MetroStatusbar):
                    widget.setBackground(pixmap)
                if number % 2:
                    sip.delete(widget)
            sip.delete(parent)

        def counts():
            gc.collect()
            return ([sys.getrefcount(thing) for thing in (colour, pixmap, pair, True, *CLASSES)]
                    + [len(gc.get_objects())])

        use(2 * len(CLASSES))
        before = counts()
        use(10000)
        after = counts()
        # A list of the counts themselves is one more object that the collector knows.
        self.assertLessEqual(max(b - a for a, b in zip(before, after)), 2, list(zip(before, after)))


if __name__ == "__main__":
    unittest.main()
