"""Designs in CSV and PNG files, as ``voxam optimise --design OUT`` writes and ``voxam score
--design`` reads them: a line of densities, 0 void and 1 solid, for each row of cells, or a grey
pixel for each cell, black solid. Pictures are read by matplotlib."""

from __future__ import annotations

import pathlib
from typing import Union

import numpy as np
import numpy.typing as npt

_LARGEST_REFINEMENT = 256  # cells per edge of an element, in each direction


def write_design(file: Union[str, "pathlib.Path"], densities: npt.ArrayLike) -> None:
    """Writes densities [y, x], such as `Iteration.densities`. They read back as the same floats in
    single precision. Raises ValueError when one is outside 0 to 1."""
    array = np.asarray(densities, np.float32)
    if array.ndim != 2 or array.size == 0:
        raise ValueError(f"densities: shape {array.shape} is not (rows, columns)")
    _check_range(array, "densities")
    np.savetxt(file, array, fmt="%.9g", delimiter=",", encoding="ascii")


def read_design(file: Union[str, "pathlib.Path"], width: int,
                height: int) -> npt.NDArray[np.float32]:
    """Reads the densities [y, x] of a design for a plate of width x height elements. Its size is
    the plate's, times the same whole number in both directions. Raises ValueError, which names
    the file, when something is wrong with it; OSError when it cannot be read."""
    path = pathlib.Path(file)
    try:
        array = _read_png(path) if path.suffix.lower() == ".png" else _read_csv(path)
        _check_range(array, "densities")
    except ValueError as error:
        raise ValueError(f"{file}: {error}") from None
    rows, columns = array.shape
    refinement = rows // height
    if not 1 <= refinement <= _LARGEST_REFINEMENT or (rows, columns) != (
            refinement * height, refinement * width):
        raise ValueError(f"{file}: {columns} x {rows} densities do not fit a plate of {width} x "
                         f"{height} elements, or a whole multiple of it")
    return array


def _read_csv(path: pathlib.Path) -> npt.NDArray[np.float32]:
    lines = path.read_text("utf-8-sig").replace(";", ",").splitlines()
    return np.loadtxt(lines, np.float32, delimiter=",", ndmin=2, comments=None)


def _read_png(path: pathlib.Path) -> npt.NDArray[np.float32]:
    from matplotlib.image import imread
    with path.open("rb") as stream:
        try:
            pixels = np.asarray(imread(stream, "png"), np.float32)
        except (OSError, SyntaxError) as error:
            raise ValueError(f"is no PNG file: {error}") from None
    if pixels.ndim == 3 and np.all(pixels == pixels[:, :, :1]):
        pixels = pixels[:, :, 0]
    if pixels.ndim != 2:
        raise ValueError("is not grey: save it as a grey picture without transparency")
    return 1 - pixels


def _check_range(array: npt.NDArray[np.float32], name: str) -> None:
    wrong = np.argwhere(~((array >= 0) & (array <= 1)))
    if len(wrong) > 0:
        y, x = wrong[0]
        raise ValueError(f"{name}[{y}, {x}]: {array[y, x]} is not from 0 (void) to 1 (solid)")
