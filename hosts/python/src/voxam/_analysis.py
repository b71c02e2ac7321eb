"""The analysis of designs in double precision."""

from __future__ import annotations

import ctypes
from dataclasses import dataclass
from typing import Iterable

import numpy as np
import numpy.typing as npt

from ._library import OutOfMemoryError, ProblemError
from ._plate import LoadLike, Plate, PlateSolver, SupportLike

# The numbers of VoxamAnalysisStatus in voxam.h.
_SOLVED, _LOOSE_PART, _LOAD_WITHOUT_MATERIAL, _MECHANISM, _, _OUT_OF_MEMORY, _NOT_CONVERGED = range(
    7)
_ADVICE = {
    _LOAD_WITHOUT_MATERIAL: "move the load, or put material under it",
    _MECHANISM: "add supports, or join the material by whole edges: elements that share only a "
                "corner are pinned there. The attribute `loose` of this error is the mask of the "
                "material that can move",
    _NOT_CONVERGED: "use 0 for void instead of a tiny modulus",
}
_TEXT_LENGTH = 256


class MechanismError(ProblemError):
    """A load acts on material that the supports leave free to move."""

    def __init__(self, text: str, advice: str, loose: npt.NDArray[np.bool_]) -> None:
        super().__init__(text, advice)
        self.args = (text, advice, loose)
        self.loose = loose  #: [y, x], True for material that is free to move


@dataclass(frozen=True, eq=False)
class Response:
    """How a design responds to its loads. Axis 0 of all arrays but `loose` is the load case."""

    compliances: npt.NDArray[np.float64]  #: force times displacement of each load case
    #: [load case, y, x, direction], of the (height + 1) x (width + 1) nodes; direction 0 is x, 1 is
    #: y; NaN at nodes without material
    displacements: npt.NDArray[np.float64]
    #: [load case, y, x], each element's share of the compliance: twice its strain energy
    energies: npt.NDArray[np.float64]
    #: [load case, y, x, component] at the centres of the elements: in x, in y, shear; tension is
    #: positive
    stresses: npt.NDArray[np.float64]
    #: [y, x], True for material that is free to move; the rest was solved without it
    loose: npt.NDArray[np.bool_]

    @property
    def compliance(self) -> float:
        """The sum over all load cases; smaller is stiffer."""
        return float(self.compliances.sum())

    @property
    def von_mises(self) -> npt.NDArray[np.float64]:
        """[load case, y, x], von Mises' equivalent stress at the centres of the elements."""
        x, y, shear = np.moveaxis(self.stresses, -1, 0)
        squares: npt.NDArray[np.float64] = x * x - x * y + y * y + 3 * shear * shear
        return np.sqrt(squares)


class Analysis(PlateSolver):
    """Analyses designs for a plate with its loads and supports, accurately for any slenderness."""

    _kind = "Analysis"
    _destroy_function = "_DestroyVoxamAnalysis"
    _set_by = {
        **dict.fromkeys(("width", "height", "load_cases", "loads", "supports"),
                        "create another Analysis, after close() of this one"),
        **dict.fromkeys(("moduli", "densities"), "pass them to solve()"),
        "closed": "call close()",
    }

    def __init__(
        self,
        width: int,
        height: int,
        loads: Iterable[LoadLike],
        supports: Iterable[SupportLike],
        load_cases: int = 1,
    ) -> None:
        """Takes a plate of width x height elements. Raises OutOfMemoryError when the plate is too
        large."""
        self._require_new()
        self._plate = Plate.checked(width, height, load_cases)
        load_records = self._plate.load_records(loads)
        support_records = self._plate.support_records(supports)
        older = self._living()
        self._plate.check_memory(self._plate.analysis_memory(), "",
                                 older._plate.analysis_memory() if older else 0)
        self._claim()
        with self._in_use() as library:
            library._InitVoxamAnalysis(
                self._plate.width, self._plate.height,
                len(load_records), load_records.ctypes.data,
                len(support_records), support_records.ctypes.data, self._plate.load_cases)

    def solve(self, moduli: npt.ArrayLike) -> Response:
        """Analyses one design: an array [y, x] of shape (height, width) with the Young's modulus of
        each element. 0 means that there is no element; nothing else stands for void.

        Raises ProblemError when a load acts where there is no material, MechanismError when a load
        acts on material that is free to move, and OutOfMemoryError. The next call starts clean.
        """
        self._require_open()
        columns = self._plate.moduli(moduli)
        width, height, cases = self.width, self.height, self.load_cases
        compliances = np.empty(cases)
        displacements = np.empty((cases, width + 1, height + 1, 2))
        energies = np.empty((cases, width, height))
        stresses = np.empty((cases, width, height, 3))
        loose = np.empty((width, height), np.bool_)
        buffer = ctypes.create_string_buffer(_TEXT_LENGTH)
        with self._in_use() as library:
            status = library._SolveVoxamAnalysis(
                columns.ctypes.data, _TEXT_LENGTH, ctypes.addressof(buffer),
                compliances.ctypes.data, displacements.ctypes.data, energies.ctypes.data,
                stresses.ctypes.data, loose.ctypes.data)
        if status in (_SOLVED, _LOOSE_PART):
            return Response(compliances, displacements.swapaxes(1, 2), energies.swapaxes(1, 2),
                            stresses.swapaxes(1, 2), loose.T)
        text = buffer.value.decode()
        if status == _MECHANISM:
            raise MechanismError(text, _ADVICE[status], loose.T)
        if status == _OUT_OF_MEMORY:
            raise OutOfMemoryError(f"not enough memory for {width} x {height} elements: make the "
                                   "plate smaller")
        raise ProblemError(text, _ADVICE.get(status, ""))
