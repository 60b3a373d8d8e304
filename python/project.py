"""Builds the bindings for the Qt that the environment variable KIVWIDGETS_QT names: 5 or 6."""

import glob
import importlib.util
import os
import re
import shutil
import subprocess
import sys

from pyqtbuild import PyQtBindings, PyQtProject
from sipbuild import Installable, UserException

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import headers  # noqa: E402

# What the module's file includes by name; the files of all other classes follow.
OWN_FILES = ("kivwidgets.sip", "qt5.sip", "qt6.sip", "elemdesc.sip", "metrostyle.sip", "aerostyle.sip")


class KivProject(PyQtProject):
    """The bindings of one of the two Qts, for the library that pkg-config finds."""

    def __init__(self):
        super().__init__()
        self.bindings_factory = KivBindings
        self.qt = os.environ.get("KIVWIDGETS_QT", "5")
        if self.qt not in ("5", "6"):
            raise UserException(f"KIVWIDGETS_QT is 5 or 6, not '{self.qt}'")
        self.library = "kivwidgets" if self.qt == "5" else "kivwidgets-qt6"

    def pkg_config(self, question):
        """What pkg-config knows of the library."""
        found = subprocess.run(["pkg-config", question, self.library], capture_output=True,
                               text=True, check=False)
        if found.returncode != 0:
            raise UserException(f"the library is not installed: {found.stderr.strip()}")
        return found.stdout.split()

    def get_metadata_overrides(self):
        return {"name": self.library, "version": self.pkg_config("--modversion")[0]}

    def get_requires_dists(self):
        # They work with the PyQt that they were compiled for, which pip must not replace.
        return []

    def apply_user_defaults(self, tool):
        if self.builder.qmake is None:
            self.builder.qmake = shutil.which("qmake6" if self.qt == "6" else "qmake")
        pyqt = importlib.util.find_spec("PyQt" + self.qt)
        if pyqt is None:
            raise UserException(f"PyQt{self.qt} is not installed")
        self.sip_include_dirs += [os.path.join(directory, "bindings")
                                  for directory in pyqt.submodule_search_locations]
        for name in list(self.bindings):
            if name != "qt" + self.qt:
                del self.bindings[name]
        self.builder.jobs = self.builder.jobs or os.cpu_count()
        # A wheel fits the library and the PyQt of this machine.
        self.manylinux = False
        super().apply_user_defaults(tool)

    def update(self, tool):
        for directory, target in (("kivwidgets", "kivwidgets"), ("forms", "KivWidgets")):
            installable = Installable(target, target_subdir=target)
            installable.files += sorted(path for path in glob.glob(os.path.join(self.root_dir, directory, "*"))
                                        if os.path.isfile(path))
            self.installables.append(installable)


class KivBindings(PyQtBindings):
    """Bindings with the doc strings of the library's headers."""

    def apply_user_defaults(self, tool):
        super().apply_user_defaults(tool)
        project = self.project
        self.pep484_pyi = True
        self.concatenate = self.concatenate or 2
        self.include_dirs += [path.removeprefix("-I")
                              for path in project.pkg_config("--cflags-only-I")]
        self.include_dirs.append(os.path.join(project.root_dir, "sip"))
        self.library_dirs += [path.removeprefix("-L")
                              for path in project.pkg_config("--libs-only-L")]
        self.libraries.append(project.library)
        # The generated code is only glue.
        self.builder_settings += ["CONFIG += c++17", "QMAKE_CXXFLAGS_RELEASE -= -O2",
                                  "QMAKE_CXXFLAGS_RELEASE += -O1"]
        for setting, variable in (("QMAKE_CXX =", "CXX"), ("QMAKE_CXXFLAGS +=", "CXXFLAGS"),
                                  ("QMAKE_LFLAGS +=", "LDFLAGS")):
            if os.environ.get(variable):
                self.builder_settings.append(f"{setting} {os.environ[variable]}")

    def generate(self):
        docs = {}
        for directory in self.include_dirs:
            for header in sorted(glob.glob(os.path.join(directory, "*.h"))):
                docs |= headers.read_docs(header)

        documented = os.path.join(self.project.build_dir, "documented")
        os.makedirs(documented, exist_ok=True)
        sources = {}
        for path in sorted(glob.glob(os.path.join(os.path.dirname(self.sip_file), "*.sip"))):
            with open(path, encoding="utf-8") as source:
                sources[os.path.basename(path)] = source.read()
        classes = [f"%Include {name}\n" for name in sources if name not in OWN_FILES]
        widgets = "\n".join(f'        {{"{name}", &sipType_{name}}},'
                            for name in headers.widget_classes(sources.values()))
        for name, source in sources.items():
            text = headers.document_sip(source.replace("@KIV_WIDGETS@", widgets), docs)
            if self.project.qt == "5":
                # PyQt5 chooses the base of Python's enumerations by itself.
                text = text.replace(" /BaseType=IntEnum/", "")
            with open(os.path.join(documented, name), "w", encoding="utf-8") as target:
                target.write(text)
        with open(os.path.join(documented, "classes.sip"), "w", encoding="utf-8") as target:
            target.writelines(classes)
        self.sip_file = os.path.join(documented, os.path.basename(self.sip_file))

        buildable = super().generate()
        for path in buildable.sources:
            rewrite(path, name_arguments)
        # Nobody builds upon these bindings: neither their .sip files nor their configuration are installed.
        self.internal = True
        buildable.installables = [installable for installable in buildable.installables
                                  if installable.name != "sip"]
        stub = os.path.join(buildable.build_dir, buildable.target + ".pyi")
        rewrite(stub, lambda text: headers.document_stub(text, docs))
        return buildable


def rewrite(path, change):
    """Changes the text of a generated file."""
    with open(path, encoding="utf-8") as source:
        text = change(source.read())
    with open(path, "w", encoding="utf-8") as target:
        target.write(text)


def name_arguments(code):
    """Generated code whose type errors show the method's signature, also where it has a doc string of ours."""
    return re.sub(r"sipNoMethod\(sipParseErr, sipName_(\w+), sipName_((?!__)\w+), SIP_NULLPTR\)",
                  r"sipNoMethod(sipParseErr, sipName_\1, sipName_\2, doc_\1_\2)", code)
