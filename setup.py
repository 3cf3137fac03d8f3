"""The wheel's native module, built by CMake from this tree (the C interface
and the library compiled into it), then packed by setuptools with the
Python files of python/nrvdataedit. Needs cmake, a C and C++ compiler and
the interpreter's headers (Debian: python3-dev)."""

import os
import re
import shutil
import subprocess
import sys
import sysconfig

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = os.path.dirname(os.path.abspath(__file__))


def project_version():
    with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as file:
        return re.search(r"project\(\w+ VERSION ([0-9.]+)", file.read()).group(1)


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        build = os.path.abspath(os.path.join(self.build_temp, "cmake"))
        subprocess.check_call(
            ["cmake", "-S", ROOT, "-B", build, "-DCMAKE_BUILD_TYPE=Release", "-DNRV_PYTHON=ON",
             "-DPython3_EXECUTABLE=" + sys.executable, "-DNRV_BUILD_TESTS=OFF", "-DNRV_BUILD_TOOLS=OFF",
             "-DNRV_BUILD_EXAMPLES=OFF", "-DNRV_INSTALL=OFF"])
        subprocess.check_call(["cmake", "--build", build, "--target", "nrvdataedit-python", "-j", "2"])
        built = os.path.join(build, "python", "nrvdataedit", "_native" + sysconfig.get_config_var("EXT_SUFFIX"))
        target = self.get_ext_fullpath(ext.name)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copyfile(built, target)


setup(
    version=project_version(),
    ext_modules=[Extension("nrvdataedit._native", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    # Not ./build, which is the README's CMake build directory.
    options={"build": {"build_base": "build-wheel"}},
)
