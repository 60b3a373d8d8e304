"""What pip builds wheels with.

The bindings are compiled for the Qt, the PyQt and the library that are installed, so the tools are the installed
ones, too, also where pip hides them from a build in an environment of its own.
"""

import os
import site
import sys

sys.path.extend(path for path in [*site.getsitepackages(), "/usr/lib/python3/dist-packages"]
                if path not in sys.path)
# By this pip hides them from the programs that the build starts.
os.environ.pop("PYTHONPATH", None)

from sipbuild.api import build_sdist, build_wheel  # noqa: E402, F401
