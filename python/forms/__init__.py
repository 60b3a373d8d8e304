"""The modules that forms name: Qt Designer writes a class's header, such as <KivWidgets/aerobutton.h>, into
a form, and pyuic imports the class from KivWidgets.aerobutton."""

import sys
import types

import kivwidgets

for _name in kivwidgets.__all__:
    _module = types.ModuleType(f"{__name__}.{_name.lower()}")
    setattr(_module, _name, getattr(kivwidgets, _name))
    sys.modules[_module.__name__] = globals()[_name.lower()] = _module
