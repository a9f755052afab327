"""The files that python3-pydicom ships. Without it the test that imports this is skipped."""
import logging
import os
import sys
import warnings

try:
    import pydicom
except ImportError:
    print("skipped: python3-pydicom is not installed")
    sys.exit(77)

warnings.simplefilter("ignore")
logging.getLogger("pydicom").setLevel(logging.CRITICAL)
DATA = os.path.join(os.path.dirname(pydicom.__file__), "data")


def dicom_files(folder=""):
    """Paths of the files below a folder of DATA that say they are DICOM, in a fixed order."""
    for base, dirs, names in os.walk(os.path.join(DATA, folder)):
        dirs.sort()
        for name in sorted(names):
            path = os.path.join(base, name)
            with open(path, "rb") as file:
                if file.read(132)[128:] == b"DICM":
                    yield path
