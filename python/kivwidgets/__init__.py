"""The KivWidgets: widgets for monitoring consoles of uninterruptible power supplies.

The classes come for the PyQt that the program has imported; for PyQt5, or else PyQt6, where it has imported
neither. A program that wants to say which imports ``kivwidgets.qt5`` or ``kivwidgets.qt6``.

``__version__`` and ``KIVWIDGETS_VERSION`` are the version of the library's headers that the module was compiled with;
``kivWidgetsVersion()`` is that of the library it runs with.
"""

import importlib
import sys
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from .qt5 import *

    __version__: str


def _bindings():
    """The module of the classes."""
    for qt in ("5", "6"):
        if f"PyQt{qt}.QtCore" in sys.modules:
            return importlib.import_module(f"{__name__}.qt{qt}")
    try:
        return importlib.import_module(f"{__name__}.qt5")
    except ModuleNotFoundError:
        return importlib.import_module(f"{__name__}.qt6")


def _names():
    return [name for name in vars(_bindings()) if not name.startswith("_")]


def __getattr__(name):
    if name == "__all__":
        return _names()
    if name == "__version__":
        version = _bindings().KIVWIDGETS_VERSION
        return f"{version >> 16}.{version >> 8 & 0xff}.{version & 0xff}"
    if name.startswith("__"):
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
    try:
        return getattr(_bindings(), name)
    except AttributeError:
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}") from None


def __dir__():
    return sorted({*globals(), *_names(), "__all__", "__version__"})
