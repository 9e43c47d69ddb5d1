"""Builds the boardlib Python module with the project's own CMake build.

The module, its type stubs, the two libraries it links and the data
installation they read are laid out in the wheel as the installed tree lays
them out, so that the library finds its data from its own folder:

    boardlib.so, boardlib.pyi
    boardlib.libs/libboardlib.so.*, libboardplatform.so.*
    boardlib.libs/share/boardlib/data/...
"""
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


def project_version():
    text = (ROOT / "CMakeLists.txt").read_text()
    return re.search(r"project\(boardlib\s+VERSION\s+([0-9.]+)", text).group(1)


class CMakeExtension(Extension):
    def __init__(self, name):
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        build = Path(self.build_temp).resolve() / "cmake"
        stage = Path(self.build_temp).resolve() / "stage"
        shutil.rmtree(stage, ignore_errors=True)
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release",
            "-DBOARDLIB_TESTS=OFF",
            f"-DPython3_EXECUTABLE={sys.executable}",
            "-DCMAKE_INSTALL_LIBDIR=boardlib.libs",
            "-DCMAKE_INSTALL_DATADIR=boardlib.libs/share",
            "-DBOARDLIB_PYTHON_INSTALL_DIR=.",
        ]
        subprocess.run(configure, check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count() or 2))
        subprocess.run(["cmake", "--build", str(build), "--target", "boardlib_py", "-j", jobs],
                       check=True)
        for component in ("runtime", "python"):
            subprocess.run(["cmake", "--install", str(build), "--prefix", str(stage),
                            "--component", component], check=True)

        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        out = target.parent
        out.mkdir(parents=True, exist_ok=True)
        for item in stage.iterdir():
            destination = out / item.name
            if item.is_dir():
                shutil.copytree(item, destination, symlinks=True, dirs_exist_ok=True)
            elif item.name.startswith("boardlib") and item.suffix == ".so":
                shutil.copy2(item, target)
            else:
                shutil.copy2(item, destination)


(ROOT / "build-python").mkdir(exist_ok=True)

setup(
    version=project_version(),
    ext_modules=[CMakeExtension("boardlib")],
    cmdclass={"build_ext": CMakeBuild},
    packages=[],
    py_modules=[],
    zip_safe=False,
    # Away from build/, the CMake build tree of make and the README.
    options={"build": {"build_base": "build-python"}, "egg_info": {"egg_base": "build-python"}},
)
