"""The modules that forms name: Qt Designer writes a class's header, such as <KivWidgets/aerobutton.h>, into
a form, and pyuic imports the class from KivWidgets.aerobutton."""

import sys
import types

import kivwidgets

for _name in kivwidgets.__all__:
    _class = getattr(kivwidgets, _name)
    if isinstance(_class, type):
        _module = types.ModuleType(f"{__name__}.{_name.lower()}")
        setattr(_module, _name, _class)
        sys.modules[_module.__name__] = globals()[_name.lower()] = _module
