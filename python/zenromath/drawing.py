"""Drawings read back."""
import os
import pathlib

from ._core import Drawing

_LARGEST = 4 << 30  # bytes; the offsets of the format have 32 bits


def read_drawing(path):
    """Opens a drawing file (DWG of version digits 1006 or 1009).

    Raises OSError where it cannot be read, ValueError where it is no such drawing. A damaged one is opened: what
    cannot be read is left out, and problems() says where.
    """
    if os.stat(path).st_size > _LARGEST:
        raise ValueError(f"{os.fspath(path)}: larger than 4 GiB, which no drawing of these versions is")
    try:
        return Drawing(pathlib.Path(path).read_bytes())
    except ValueError as problem:
        raise ValueError(f"{os.fspath(path)}: {problem}") from None
