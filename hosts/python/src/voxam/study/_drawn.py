"""What a design is worth as drawn: in black and white, analysed in double precision."""

from __future__ import annotations

import math
from dataclasses import dataclass
from typing import Any, Dict, List, Mapping, Optional, Tuple

import numpy as np
import numpy.typing as npt

from .._analysis import Analysis, MechanismError
from .._library import ProblemError
from .._plate import Load, Support
from ..scenes import load_case_weights, weighted_sum

_ROUNDING = np.float32(1e-4)
_MOST_ELEMENTS = 1_000_000  # take some ten seconds and 3 GB to analyse

Floats = npt.NDArray[np.float64]


@dataclass(frozen=True)
class Drawn:
    """The design in black and white."""

    compliance: Optional[float]  #: weighted, of the load cases in use; None if not analysed
    volume: float  #: 0 to 1
    level: float  #: cells of at least this density are solid
    loose: int  #: solid cells that nothing holds, which are left out
    displacements: Optional[Floats]  #: [load case in use, y, x, direction], or NaN
    warnings: Tuple[str, ...]


def drawn(material: npt.NDArray[np.float32], document: Mapping[str, Any]) -> Drawn:
    """Analyses a picture's material ([y, x], 1 is solid) under the loads and supports that the
    scene ends with. Each cell of the picture is an element then."""
    level = keeping_level(material)
    solid = material.astype(np.float64) >= level
    volume = float(solid.mean())
    scene = final_scene(document)
    height, width = material.shape
    scale = width // int(scene["grid"]["width"])
    if material.size > _MOST_ELEMENTS:
        return Drawn(None, volume, level, 0, None,
                     (f"as drawn: {material.size} cells are too many to analyse: lower meshFactor "
                      "or subdivision",))
    weights = load_case_weights(scene)
    cases = sorted({int(case) for case in scene.get("loadCasesInUse", range(len(weights)))})
    loads, supports = _loads(scene, scale, cases), _supports(scene, scale)
    try:
        with Analysis(width, height, loads, supports, load_cases=len(cases)) as analysis:
            result = analysis.solve(solid.astype(np.float64))
    except ProblemError as error:
        return Drawn(None, volume, level, 0, None, (f"as drawn: {_reason(error)}",))
    warnings = []
    loose = int(np.count_nonzero(result.loose))
    if loose:
        warnings.append(f"as drawn: {loose} loose elements, which carry nothing")
    compliance = weighted_sum([weights[case] for case in cases], result.compliances)
    return Drawn(compliance, volume, level, loose, np.asarray(result.displacements),
                 tuple(warnings))


def _reason(error: ProblemError) -> str:
    """Why a design cannot be analysed. The library's own text counts nodes in cells of the picture,
    which no reader of a scene knows."""
    if isinstance(error, MechanismError):
        return ("the supports leave material under a load free to move: add supports, or use more "
                "volume or a finer grid")
    if "no material under" in error.text:
        return ("there is no material under a load: keep elements there solid, or use more volume "
                "or a finer grid")
    return error.text


def keeping_level(material: npt.NDArray[np.float32]) -> float:
    """The density from which cells are solid, such that the volume is kept as well as cells allow:
    halfway between two densities, or 0.5 where the material is black and white already. The program
    voxam draws designs by the same rule."""
    cells = np.sort(material, axis=None)[::-1]
    volume = float(material.mean(dtype=np.float64)) * cells.size
    count = math.floor(volume + 0.5)
    if not 0 < count < cells.size:
        return 0.5
    # Cells that differ by rounding, such as those of a symmetric design, stay together.
    last = cells[count - 1]
    before, through = (int(np.count_nonzero(cells > last + shift))
                       for shift in (_ROUNDING, -_ROUNDING))
    cut = through if abs(through - volume) <= abs(before - volume) else before
    above = float(cells[cut - 1]) if cut > 0 else 1.0
    below = float(cells[cut]) if cut < cells.size else 0.0
    return (above + below) / 2


def final_scene(document: Mapping[str, Any]) -> Dict[str, Any]:
    """The scene with the changes of its timeline that its iterations reach."""
    scene = dict(document)
    for change in scene.pop("timeline", []):
        if change["iteration"] <= scene.get("iterations", 100):
            scene.update({key: value for key, value in change.items() if key != "iteration"})
    return scene


def _nodes(entry: Mapping[str, Any], scale: int) -> List[Tuple[int, int]]:
    columns, rows = (_range(entry[axis], scale) for axis in "xy")
    return [(x, y) for x in columns for y in rows]


def _range(value: Any, scale: int) -> range:
    first, last = value if isinstance(value, list) else (value, value)
    return range(int(first) * scale, int(last) * scale + 1)


def _loads(scene: Mapping[str, Any], scale: int, cases: List[int]) -> List[Load]:
    """The loads of the cases in use, with the total force of each shared equally by its nodes."""
    loads = []
    for entry in scene["loads"]:
        if entry.get("loadCase", 0) not in cases:
            continue
        case = cases.index(entry.get("loadCase", 0))
        nodes = _nodes(entry, scale)
        fx, fy = (entry.get(key, 0.0) / len(nodes) for key in ("fx", "fy"))
        loads += [Load(x, y, fx, fy, case) for x, y in nodes]
    return loads


def _supports(scene: Mapping[str, Any], scale: int) -> List[Support]:
    return [Support(x, y, entry["fix"]) for entry in scene["supports"]
            for x, y in _nodes(entry, scale)]
