"""Data sets for learning: designs for random boundary conditions, as arrays."""

from __future__ import annotations

import contextlib
import json
import math
import os
import pathlib
import random
import sys
import textwrap
from typing import Any, Dict, Iterator, List, Mapping, NamedTuple, Optional, Tuple

import numpy as np
import numpy.typing as npt

from .. import __version__, scenes
from ._engines import Stop
from ._folder import AnyPath, Results, write_whole
from ._plan import StudyError
from ._progress import counted
from ._study import run

_VOLUMES = (0.2, 0.6)
_FORCES = (0.5, 1.0)
_MOST_LOADS = 3
_NEAREST = 0.3  # of the plate's shorter side, from a load to a support: nearer, there is no design
_SHORTEST_SUPPORT = 0.25  # of an edge
_FOOT = 0.1  # of an edge
_LEAST_SIDE = 4
_MOST_COMPLIANT = 2.0  # as drawn, of what it was while optimising: beyond, a member is torn
_INDEX, _README = "dataset.json", "README.md"
_CANDIDATES = 4  # per design that is wanted, before it is given up


class DatasetOptions(NamedTuple):
    """What a data set is made of."""

    designs: int
    seed: int = 0
    width: int = 60
    height: int = 40
    subdivision: int = 1
    iterations: int = 100


class _Field(NamedTuple):
    axes: str
    dtype: str
    meaning: str


_UNITS = """The edge of an element, the thickness of the plate and Young's modulus of solid material
are 1, and Poisson's ratio is 0.3. Displacements are in edges of an element, forces in Young's
modulus times edge times thickness, and compliances in force times edge."""
_FIELDS = {
    "forces": _Field("design, node y, node x, direction", "float32",
                     "input: force on each node, x to the right and y downwards"),
    "supports": _Field("design, node y, node x, direction", "uint8",
                       "input: 1 where a node is held in that direction"),
    "volume_fractions": _Field("design", "float64", "input: material to use, as a part of the "
                               "plate"),
    "densities": _Field("design, cell y, cell x", "float32",
                        "output: material of each cell, 0 void to 1 solid, with greys"),
    "drawn": _Field("design, cell y, cell x", "uint8",
                    "output: the design in black and white, 1 is solid, with the volume kept"),
    "displacements": _Field("design, cell node y, cell node x, direction", "float32",
                            "output: displacement of each node of the design in black and white, "
                            "NaN where there is no material"),
    "compliances": _Field("design", "float64",
                          "output: compliance of the design in black and white, the sum of force "
                          "times displacement; smaller is stiffer"),
    "compliances_optimising": _Field("design", "float64",
                                     "output: compliance that the optimiser worked with, with "
                                     "greys weakened by the penalty"),
}


def make_dataset(folder: AnyPath, options: DatasetOptions, *, client: Any = None,
                 processes: Optional[int] = None, progress: bool = True,
                 stop: Stop = lambda: False) -> Optional[pathlib.Path]:
    """Makes a data set: designs for random supports, loads and volumes, with the displacements.

    The boundary conditions follow from the seed alone. A plate whose design is not sound in black
    and white, such as one with loose parts, is replaced by the next. The folder gets an array for
    each field, README.md and dataset.json with their description, scenes.jsonl with the scenes, and
    study/ with the runs, from which the same call continues after an
    interruption. A folder with another data set is refused.

    Returns the folder, or None when stop() has become true before the end.
    """
    _check(options)
    folder = pathlib.Path(folder)
    _require_no_other(folder, options)
    candidates = options.designs
    while True:
        pairs = [_pair(options, i) for i in range(candidates)]
        results = run(pairs, folder / "study", client=client, processes=processes,
                      keep=("design", "displacements"), title="Data set", progress=progress,
                      stop=stop)
        if stop():
            return None
        good = [row for row in results.rows() if _is_sound(row)]
        if len(good) >= options.designs:
            break
        missing = options.designs - len(good)
        if progress:
            print(f"{counted(missing, 'design')} not sound: as many plates more", file=sys.stderr)
        candidates += missing
        if candidates > _CANDIDATES * options.designs + _CANDIDATES:
            raise StudyError(f"only {len(good)} of {candidates} random plates have a sound "
                             "design: take a finer grid or more iterations")
    _write(folder, options, results, good)
    return folder


def _pair(options: DatasetOptions, index: int) -> Tuple[Dict[str, Any], Dict[str, Any]]:
    scene = random_scene(options, index)
    return {"volumeFraction": scene["volumeFraction"], "candidate": index}, scene


def _is_sound(row: Mapping[str, Any]) -> bool:
    """Whether the design in black and white is one piece that carries the loads as the optimiser
    meant it to."""
    drawn = row.get("compliance_drawn")
    return (drawn is not None and row["loose"] == 0
            and drawn <= _MOST_COMPLIANT * row["compliance_optimising"])


def _check(options: DatasetOptions) -> None:
    if options.designs < 1:
        raise StudyError(f"designs: {options.designs} is too few: at least 1 is needed")
    if min(options.width, options.height) < _LEAST_SIDE:
        raise StudyError(f"grid: {options.width}x{options.height} is too small: take at least "
                         f"{_LEAST_SIDE}x{_LEAST_SIDE} elements")
    scenes.scene_of(random_scene(options, 0), "data set")


def _require_no_other(folder: pathlib.Path, options: DatasetOptions) -> None:
    try:
        made = json.loads((folder / _INDEX).read_text("utf-8"))["options"]
    except (OSError, ValueError, KeyError):
        return
    if made != options._asdict():
        other = ", ".join(f"{name} {value}" for name, value in made.items())
        raise StudyError(f"{folder} contains another data set ({other}): choose another folder")


def random_scene(options: DatasetOptions, index: int) -> Dict[str, Any]:
    """The boundary conditions of a candidate: supported, loaded, and no load near a support."""
    source = random.Random(f"{options.seed}/{index}")
    supports = _supports(source, options.width, options.height)
    return {
        "grid": {"width": options.width, "height": options.height},
        "subdivision": options.subdivision,
        "volumeFraction": round(source.uniform(*_VOLUMES), 4),
        "iterations": options.iterations,
        "supports": supports,
        "loads": _loads(source, supports, options.width, options.height),
    }


def _supports(source: random.Random, width: int, height: int) -> List[Dict[str, Any]]:
    """An edge, a part of an edge, two opposite edges, two feet, or a hinge and a roller."""
    along = source.choice("xy")
    across = "y" if along == "x" else "x"
    length, breadth = (width, height) if along == "x" else (height, width)
    edge = source.choice((0, breadth))
    foot = max(1, round(_FOOT * length))

    def held(first: int, last: int, fix: str = "xy", at: int = edge) -> Dict[str, Any]:
        return {along: [first, last], across: at, "fix": fix}

    kind = source.choice(("edge", "part", "both", "feet", "hinge"))
    if kind == "edge":
        return [held(0, length)]
    if kind == "part":
        size = source.randint(max(1, round(_SHORTEST_SUPPORT * length)), length)
        first = source.randint(0, length - size)
        return [held(first, first + size)]
    if kind == "both":
        return [held(0, length, at=0), held(0, length, at=breadth)]
    if kind == "feet":
        return [held(0, foot), held(length - foot, length)]
    return [held(0, foot), held(length - foot, length, fix=across)]


def _loads(source: random.Random, supports: List[Dict[str, Any]], width: int,
           height: int) -> List[Dict[str, Any]]:
    nearest = _NEAREST * min(width, height)
    held = np.argwhere(_support_map(supports, width, height).any(axis=2))
    loads: List[Dict[str, Any]] = []
    for _ in range(source.randint(1, _MOST_LOADS)):
        while True:
            x, y = _node(source, width, height)
            if np.hypot(held[:, 1] - x, held[:, 0] - y).min() >= nearest:
                break
        angle, size = source.uniform(0, 2 * math.pi), source.uniform(*_FORCES)
        loads.append({"x": x, "y": y, "fx": round(size * math.cos(angle), 4),
                      "fy": round(size * math.sin(angle), 4)})
    return loads


def _node(source: random.Random, width: int, height: int) -> Tuple[int, int]:
    """Mostly on the border of the plate, where loads act in practice."""
    x, y = source.randint(0, width), source.randint(0, height)
    side = source.choice(("left", "right", "top", "bottom", "inside", "inside"))
    return {"left": (0, y), "right": (width, y), "top": (x, 0), "bottom": (x, height)}.get(
        side, (x, y))


def _support_map(supports: List[Dict[str, Any]], width: int, height: int
                 ) -> npt.NDArray[np.uint8]:
    held = np.zeros((height + 1, width + 1, 2), np.uint8)
    for support in supports:
        columns, rows = (value if isinstance(value, list) else [value, value]
                         for value in (support["x"], support["y"]))
        for direction in support["fix"]:
            held[rows[0]:rows[1] + 1, columns[0]:columns[1] + 1, "xy".index(direction)] = 1
    return held


def _write(folder: pathlib.Path, options: DatasetOptions, results: Results,
           good: List[Dict[str, Any]]) -> None:
    open_memmap: Any = np.lib.format.open_memmap  # NumPy gives it no types
    arrays: Dict[str, Any] = {}
    lines = []
    for place, row in enumerate(good):
        values, scene = _fields(options, results, row)
        lines.append(json.dumps(scene, sort_keys=True))
        for name, value in values.items():
            if name not in arrays:
                arrays[name] = open_memmap(folder / f".{name}.npy", "w+", _FIELDS[name].dtype,
                                           (len(good), *np.shape(value)))
            arrays[name][place] = value
    described = {name: {"file": f"{name}.npy", "axes": field.axes, "meaning": field.meaning,
                        "dtype": field.dtype, "shape": list(arrays[name].shape)}
                 for name, field in _FIELDS.items()}
    for name in (_INDEX, _README):  # written last: they never describe arrays of two versions
        with contextlib.suppress(FileNotFoundError):
            (folder / name).unlink()
    for name in list(arrays):
        arrays.pop(name).flush()
        os.replace(folder / f".{name}.npy", folder / f"{name}.npy")
    write_whole(folder / "scenes.jsonl", ("\n".join(lines) + "\n").encode("utf-8"))
    index = {"voxam": __version__, "options": options._asdict(), "units": _UNITS.replace("\n", " "),
             "fields": described}
    write_whole(folder / _INDEX, (json.dumps(index, indent=1) + "\n").encode("utf-8"))
    write_whole(folder / _README, _readme(options, described).encode("utf-8"))


def _fields(options: DatasetOptions, results: Results, row: Mapping[str, Any]
            ) -> Tuple[Dict[str, Any], Dict[str, Any]]:
    scene = results.scene(row["run"])
    design = results.design(row["run"])
    forces = np.zeros((options.height + 1, options.width + 1, 2), np.float32)
    for load in scene["loads"]:
        forces[load["y"], load["x"]] += (load["fx"], load["fy"])
    return {
        "forces": forces,
        "supports": _support_map(scene["supports"], options.width, options.height),
        "volume_fractions": scene["volumeFraction"],
        "densities": design,
        "drawn": design.astype(np.float64) >= row["level"],
        "displacements": results.displacements(row["run"])[0],
        "compliances": row["compliance_drawn"],
        "compliances_optimising": row["compliance_optimising"],
    }, scene


def _readme(options: DatasetOptions, described: Mapping[str, Mapping[str, Any]]) -> str:
    lines = list(_list(described))
    cells = "A cell is an element." if options.subdivision == 1 else (
        f"An element has {options.subdivision} x {options.subdivision} cells; cell nodes are "
        "their corners.")
    return f"""# {options.designs} optimised plates

Two-dimensional plates of {options.width} x {options.height} square elements
with random supports, loads and volume, and the stiffest design that
Voxam {__version__} found for each. Made with:

    python -m voxam dataset FOLDER --designs {options.designs} --seed {options.seed} \\
        --grid {options.width}x{options.height} --subdivision {options.subdivision} \\
        --iterations {options.iterations}

x counts from the left and y from the top. Nodes are the corners of elements.
{cells}

{textwrap.fill("Units: " + _UNITS, 80)}

```python
import numpy
densities = numpy.load("densities.npy", mmap_mode="r")
```

{chr(10).join(lines)}

`scenes.jsonl` contains the scene of each design, one in a line. `dataset.json`
contains this list for programs. The same command makes the same arrays with the
same version of Voxam on the same kind of processor. `study/` contains the runs;
without it the data set is still complete.
"""


def _list(described: Mapping[str, Mapping[str, Any]]) -> Iterator[str]:
    for field in described.values():
        shape = " x ".join(map(str, field["shape"]))
        text = (f"`{field['file']}`, {shape}, {field['dtype']} ({field['axes']}): "
                f"{field['meaning']}")
        yield textwrap.fill(text, 80, initial_indent="- ", subsequent_indent="  ",
                            break_on_hyphens=False)
