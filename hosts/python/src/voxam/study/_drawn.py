"""What a design is worth as drawn: in black and white, analysed in double precision."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Dict, List, Mapping, Optional, Tuple

import numpy as np
import numpy.typing as npt

from .._analysis import Analysis, MechanismError
from .._library import ProblemError
from .._plate import Load, Support

_HALVINGS = 40

Floats = npt.NDArray[np.float64]


@dataclass(frozen=True)
class Drawn:
    """The design in black and white."""

    compliance: Optional[float]  #: over the load cases in use; None if it cannot be analysed
    volume: float  #: 0 to 1
    level: float  #: cells of at least this density are solid
    displacements: Optional[Floats]  #: [load case in use, y, x, direction], or NaN
    warnings: Tuple[str, ...]


def drawn(material: npt.NDArray[np.float32], document: Mapping[str, Any]) -> Drawn:
    """Analyses a picture's material ([y, x], 1 is solid) under the loads and supports that the
    scene ends with. Each cell of the picture is an element then."""
    level = keeping_level(material)
    solid = material >= level
    volume = float(solid.mean())
    scene = final_scene(document)
    height, width = material.shape
    scale = width // int(scene["grid"]["width"])
    cases = sorted({int(case) for case in scene.get("loadCasesInUse",
                                                    range(int(scene.get("loadCases", 1))))})
    loads, supports = _loads(scene, scale, cases), _supports(scene, scale)
    try:
        with Analysis(width, height, loads, supports, load_cases=len(cases)) as analysis:
            result = analysis.solve(solid.astype(np.float64))
    except ProblemError as error:
        return Drawn(None, volume, level, None, (f"as drawn: {_reason(error)}",))
    warnings = []
    loose = int(np.count_nonzero(result.loose))
    if loose:
        warnings.append(f"as drawn: {loose} loose elements, which carry nothing")
    return Drawn(result.compliance, volume, level, np.asarray(result.displacements), tuple(warnings))


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
    """The density from which cells count as solid, such that the volume is kept as well as it can
    be: by bisection."""
    target = float(material.sum(dtype=np.float64))
    low, level, high = 0.0, 0.5, 1.0
    for _ in range(_HALVINGS):
        excess = np.count_nonzero(material >= level) - target
        if abs(excess) <= 0.5:  # no level comes nearer
            break
        low, high = (level, high) if excess > 0 else (low, level)
        level = (low + high) / 2
    return level


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
