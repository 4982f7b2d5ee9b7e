"""Builds the compiled module qel._qel with the project's own CMake, offline.

`pip install --no-build-isolation ./python` (from the repository root) configures the repository
with the library built static and position-independent into the module, builds the target _qel
only and places it in the package. CMake, Ninja (when present), a C++17 compiler, pybind11 and the
Python development files come from the system (scripts/deps.sh installs them).
"""

import os
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parent


class CMakeExtension(Extension):
    def __init__(self, name):
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        build = Path(self.build_temp).resolve() / "cmake"
        build.mkdir(parents=True, exist_ok=True)
        configure = [
            "cmake", "-S", str(REPOSITORY), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release",
            "-DBUILD_SHARED_LIBS=OFF",
            "-DQEL_BUILD_PYTHON=ON",
            "-DQEL_BUILD_TESTS=OFF",
            "-DQEL_BUILD_TOOLS=OFF",
            "-DQEL_BUILD_EXAMPLES=OFF",
            "-DQEL_BUILD_BENCH=OFF",
            f"-DPython3_EXECUTABLE={sys.executable}",
        ]
        if shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        subprocess.run(configure, check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "2")
        subprocess.run(["cmake", "--build", str(build), "--target", "_qel", "-j", jobs], check=True)
        built = next((build / "python" / "qel").glob("_qel*" + Path(target).suffix))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(built, target)
        # The font of the font-text functions, generated beside the module when Unifont is there.
        font = built.parent / "hzk16.dat"
        if font.is_file():
            shutil.copy2(font, target.parent / "hzk16.dat")


setup(ext_modules=[CMakeExtension("qel._qel")], cmdclass={"build_ext": CMakeBuild})
