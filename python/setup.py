"""Builds and installs the quorvel package offline from this repository:

    /usr/bin/python3 -m pip install --no-build-isolation --no-index ./python

The extension is built by the repository's CMake build (only the library and the module), so
the package and `make` compile the same sources with the same flags.
"""
import os
import pathlib
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = pathlib.Path(__file__).resolve().parent
REPOSITORY = HERE.parent


def version():
    for line in (REPOSITORY / "CMakeLists.txt").read_text().splitlines():
        if line.startswith("project(quorvel VERSION "):
            return line.split()[2]
    raise RuntimeError("no project version in CMakeLists.txt")


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        build = pathlib.Path(self.build_temp).resolve() / "quorvel"
        options = ["-DQUORVEL_BUILD_CLI=OFF", "-DQUORVEL_BUILD_TESTS=OFF", "-DQUORVEL_BUILD_BENCH=OFF",
                   "-DQUORVEL_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}"]
        subprocess.run(["cmake", "-S", str(REPOSITORY), "-B", str(build), "-G", "Ninja", *options], check=True)
        jobs = os.environ.get("QUORVEL_JOBS", "2")
        subprocess.run(["cmake", "--build", str(build), "--target", "quorvel_python", "-j", jobs], check=True)
        built = next((build / "python" / "quorvel").glob("_quorvel*.so"))
        target = pathlib.Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        self.copy_file(str(built), str(target))


setup(
    name="quorvel",
    version=version(),
    description="Lays out and prints business documents: invoices, vouchers, receipts, statements",
    license="MIT",
    packages=["quorvel"],
    package_data={"quorvel": ["*.pyi", "py.typed"]},
    ext_modules=[Extension("quorvel._quorvel", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    python_requires=">=3.9",
    zip_safe=False,
)
