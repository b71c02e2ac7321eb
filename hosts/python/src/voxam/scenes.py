"""Scene files, the JSON files that the program ``voxam optimise`` runs.

`read_scene` reads all keys that an optimisation needs: grid, loads, supports, loadCases,
loadCasesInUse, volumeFraction, penalty, subdivision, meshFactor, iterations, passive, blob,
timeline and title. It checks symmetry and elementSize, but does not use them: they concern files
that the program writes. It ignores description and $schema. `read_scored` reads the densities of a
design to score. As in the program, forces reach the library in the unit of the largest force, times
the square root of the weight of their load case, and compliances are returned in the unit of the
scene: the sum over the load cases in use of weight times compliance. The package does not repeat
the program's own checks before and after a run.
"""

from __future__ import annotations

import difflib
import json
import math
import pathlib
import re
from dataclasses import dataclass, replace
from typing import Any, Callable, Dict, Generator, List, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._library import ProblemError
from ._optimiser import Iteration, Optimiser, placement_fault
from ._plate import Load, Support
from .designs import read_design

_SETTINGS = ("loads", "supports", "volumeFraction", "penalty", "passive", "blob", "loadCasesInUse")
_SCENE_KEYS = ("$schema", "title", "description", "grid", "symmetry", "elementSize", "loadCases",
               "densities", "subdivision", "meshFactor", "iterations", "timeline", *_SETTINGS)
_PASSIVE_KINDS = {"void": "void", "solid": "solid", "secondSolid": "second_solid"}
_PASSIVE_CHARACTERS = {"o": "void", "#": "solid", "2": "second_solid"}

# The library takes displacements beyond some 1e7 for those of a plate that nothing holds, but a
# slender one reaches them under a force of 1.
_BENDS_TOO_FAR = "Change load/support"
_SOFTER = 1e3
_SOFTER_STEPS = 2

_MAX_TITLE = 200  # characters
_MAX_LOAD_CASES = 64
_MAX_LOAD_CASE_NAME = 40  # characters
_CONTROL = re.compile("[\\x00-\\x1f\\x7f-\\x9f\\u2028\\u2029]")
_MAX_NODES = 4_000_000  # of all loads, or of all supports
_MAX_CHANGES = 1000
_MAX_CELLS = 32767  # in a list of elements
_MAX_DESIGN_CELLS = 1_000_000
_MAX_PICTURE_CELLS = 4_000_000
_MAX_FINE_SIDE = 32000  # cells of design and picture in x and in y


class SceneError(ValueError):
    """Something in a scene file is not as it has to be; names the file, the key and the value."""


@dataclass(frozen=True)
class Change:
    """A change of the timeline: what it replaces of a scene's settings, before an iteration."""

    iteration: int
    settings: Dict[str, Any]
    restart: Optional[Dict[str, Any]]  #: arguments of Optimiser.restart


@dataclass(frozen=True)
class ScoredScene:
    """A plate, what acts on it, and a design of it; the arguments of Analysis and Game."""

    title: str
    width: int
    height: int
    load_cases: int
    load_cases_in_use: List[int]  #: those that count in the score of ``voxam score``
    loads: List[Load]
    supports: List[Support]
    densities: npt.NDArray[np.float32]  #: [y, x], 0 void and 1 solid
    load_case_names: Tuple[str, ...]  #: empty for a load case without a name
    load_case_weights: Tuple[float, ...]  #: of the compliances in `total`

    def total(self, compliances: npt.ArrayLike) -> float:
        """The compliance of ``voxam score``: the sum over the load cases in use of weight times
        compliance. `compliances` has one of each load case, in use or not."""
        used = self.load_cases_in_use
        return weighted_sum(np.asarray(self.load_case_weights)[used],
                            np.asarray(compliances)[used])


@dataclass(frozen=True)
class Scene:
    """A plate, what acts on it, and how it is optimised."""

    title: str
    width: int
    height: int
    load_cases: int
    iterations: int
    subdivision: int
    mesh_factor: int
    #: in x or y, times the square root of the weight of its load case, before the nodes of a load
    #: share it; of the timeline as well
    largest_force: float
    settings: Dict[str, Any]  #: the penalty, and else the arguments of Optimiser.update
    timeline: Tuple[Change, ...]
    load_case_names: Tuple[str, ...]  #: empty for a load case without a name
    load_case_weights: Tuple[float, ...]  #: of the compliances of load cases in their sum

    @property
    def has_blob(self) -> bool:
        """Whether it starts with a blob."""
        return bool(np.any(self.settings.get("blob", False)))


def weighted_sum(weights: npt.ArrayLike, compliances: npt.ArrayLike) -> float:
    """The sum of weight times compliance."""
    return float((np.asarray(weights, np.float64) * np.asarray(compliances, np.float64)).sum())


def load_case_weights(document: Dict[str, Any]) -> List[float]:
    """The weight of each load case of a scene that `scene_of` accepts."""
    cases = document.get("loadCases", 1)
    if not isinstance(cases, list):
        return [1.0] * int(cases)
    return [float(case.get("weight", 1.0)) for case in cases]


def run(
    scene: Scene, iterations: Optional[int] = None, move_blob: bool = False
) -> Generator[Tuple[int, Iteration], None, None]:
    """Optimises a scene, with the changes of its timeline: yields the number of each iteration,
    from 1, and its result. If an iteration fails, resumes with the next change of the timeline, or
    raises ProblemError if no iteration is left. Raises ValueError if there is no blob to move."""
    if move_blob and not scene.has_blob:
        raise ValueError("blob: no elements, needed for a blob that moves")
    last = scene.iterations if iterations is None else iterations
    changes = [change for change in scene.timeline if change.iteration <= last]
    with Optimiser(scene.width, scene.height, volume_fraction=scene.settings["volume_fraction"],
                   subdivision=scene.subdivision, mesh_factor=scene.mesh_factor,
                   load_cases=scene.load_cases) as optimiser:
        problem = _Problem(scene, optimiser)
        number = 1
        while number <= last:
            if changes and changes[0].iteration == number:
                problem.make(changes.pop(0))
            try:
                result = problem.iterate(move_blob)
            except ProblemError:
                if not changes:
                    raise
                number = changes[0].iteration
                continue
            yield number, result
            number += 1


class _Problem:
    """What the optimiser of a run was told, in the forces of the scene."""

    def __init__(self, scene: Scene, optimiser: Optimiser) -> None:
        self._optimiser = optimiser
        self._settings = dict(scene.settings)
        self._unit = scene.largest_force or 1.0
        # The library sums unweighted compliances, which grow with the square of the forces.
        self._factors = [math.sqrt(weight) for weight in scene.load_case_weights]
        self._moved: Optional[npt.NDArray[np.bool_]] = None  # the blob, since it was given
        self._has_design = False
        optimiser.update(**self._told())

    def make(self, change: Change) -> None:
        """Makes a change. One of the penalty alone is no update, as each iteration is told it."""
        self._settings.update(change.settings)
        if "blob" in change.settings:
            self._moved = None
        if change.restart is not None:
            self._optimiser.restart_with(self._told(), **change.restart)
        elif change.settings.keys() - {"penalty"}:
            self._optimiser.update(**self._told())

    def iterate(self, move_blob: bool) -> Iteration:
        """Runs an iteration. A plate that bends too far for the library, before there is a design,
        starts again with smaller forces."""
        moves = move_blob and bool(np.any(self._settings.get("blob", False)))
        for steps_left in range(_SOFTER_STEPS, -1, -1):
            try:
                result = self._optimiser.iterate(self._settings["penalty"], move_blob=moves)
                break
            except ProblemError as error:
                if self._has_design or error.text != _BENDS_TOO_FAR or steps_left == 0:
                    raise
            self._unit *= _SOFTER
            self._optimiser.restart_with(self._told())
        self._has_design = True
        if moves:
            self._moved = result.blob
        return replace(result, compliance=result.compliance * (self._unit * self._unit))

    def _told(self) -> Dict[str, Any]:
        """The arguments of an update, with the forces in the unit in force."""
        told = {key: value for key, value in self._settings.items() if key != "penalty"}
        told["loads"] = [load._replace(fx=load.fx * self._factors[load.load_case] / self._unit,
                                       fy=load.fy * self._factors[load.load_case] / self._unit)
                         for load in told["loads"]]
        if self._moved is not None:
            told["blob"] = self._moved
        return told


def read_scene(file: Union[str, "pathlib.Path"]) -> Scene:
    """Reads a scene to optimise. Raises SceneError, or OSError when the file cannot be read."""
    path = pathlib.Path(file)
    return scene_of(read_document(path), str(path), path.stem)


def read_scored(file: Union[str, "pathlib.Path"]) -> ScoredScene:
    """Reads a scene with the densities of a design, as ``voxam score`` does. Raises SceneError,
    also for a design that is finer than the grid, or OSError when a file cannot be read."""
    path = pathlib.Path(file)
    return _Reader(_Value(read_document(path), str(path), "")).scored(path.stem, path.parent)


def read_document(file: Union[str, "pathlib.Path"]) -> Any:
    """Reads a JSON file that may contain comments. Raises SceneError when it is not JSON, or
    OSError when it cannot be read."""
    path = pathlib.Path(file)
    try:
        text = _without_comments(path.read_text("utf-8-sig"))
        return json.loads(text, object_pairs_hook=_without_duplicates,
                          parse_constant=_no_constant)
    except ValueError as error:
        raise SceneError(f"{path}: {error}") from None
    except RecursionError:
        raise SceneError(f"{path}: arrays and objects are nested too deeply") from None


def scene_of(document: Any, file: str = "scene", title: str = "scene") -> Scene:
    """Checks a scene that is given as the object of its JSON file. `file` begins the messages of
    SceneError, `title` stands in for a missing title."""
    return _Reader(_Value(document, file, "")).scene(title)


def _without_comments(text: str) -> str:
    """With blanks in the place of // to the end of a line and of /* between */, so that errors name
    the right line and column. Strings are no comments, whatever they have inside."""
    return re.sub(r'"(?:\\.|[^"\\])*"|//[^\n]*|/\*.*?\*/', lambda found: found[0]
                  if found[0].startswith('"') else re.sub(r"[^\n]", " ", found[0]), text,
                  flags=re.DOTALL)


def _without_duplicates(pairs: List[Tuple[str, Any]]) -> Dict[str, Any]:
    members = dict(pairs)
    if len(members) < len(pairs):
        keys = [key for key, _ in pairs]
        twice = next(key for key in keys if keys.count(key) > 1)
        raise ValueError(f'key "{twice}" appears twice in the same object')
    return members


def _no_constant(name: str) -> float:
    raise ValueError(f"{name} is no JSON")


class _Value:
    """A value of the document, which knows where it stands."""

    def __init__(self, raw: Any, file: str, path: str) -> None:
        self.raw = raw
        self._file = file
        self._path = path

    def fail(self, what: str) -> SceneError:
        return SceneError(": ".join(part for part in (self._file, self._path, what) if part))

    def find(self, key: str) -> Optional[_Value]:
        if key not in self.raw:
            return None
        return _Value(self.raw[key], self._file, f"{self._path}.{key}" if self._path else key)

    def at(self, key: str) -> _Value:
        found = self.find(key)
        if found is None:
            raise self.fail(f'"{key}" is missing')
        return found

    def allow_only(self, keys: Sequence[str]) -> None:
        if not isinstance(self.raw, dict):
            raise self.fail("an object is needed")
        for key in self.raw:
            if key not in keys:
                near = difflib.get_close_matches(key, keys, 1)
                hint = f'did you mean "{near[0]}"?' if near else "allowed are " + ", ".join(keys)
                raise self.fail(f'unknown key "{key[:40]}"; {hint}')

    def elements(self) -> List[_Value]:
        if not isinstance(self.raw, list):
            raise self.fail("an array is needed")
        return [_Value(raw, self._file, f"{self._path}[{i}]") for i, raw in enumerate(self.raw)]

    def text(self) -> str:
        if not isinstance(self.raw, str):
            raise self.fail("a text is needed")
        return self.raw

    def number(self, least: float, most: float) -> float:
        if isinstance(self.raw, bool) or not isinstance(self.raw, (int, float)):
            raise self.fail("a number is needed")
        if not least <= self.raw <= most:
            raise self.fail(f"{self.raw} is outside {least:g}..{most:g}")
        return self.raw

    def integer(self, least: int, most: int) -> int:
        # Programs that know no other numbers write 20.0.
        if isinstance(self.raw, float) and not self.raw.is_integer():
            raise self.fail(f"a whole number is needed: {self.raw} is not whole")
        return int(self.number(least, most))

    def numbers(self, read: Callable[[_Value], Any]) -> Tuple[Any, Any]:
        """A pair [from, to], or one number for both."""
        if not isinstance(self.raw, list):
            return read(self), read(self)
        if len(self.raw) != 2:
            raise self.fail("two numbers are needed, [from, to]")
        first, second = (read(element) for element in self.elements())
        if first > second:
            raise self.fail(f"{first} is larger than {second}")
        return first, second

    def range(self, most: int) -> range:
        first, last = self.numbers(lambda value: value.integer(0, most))
        return range(first, last + 1)


class _Reader:
    def __init__(self, root: _Value) -> None:
        root.allow_only(_SCENE_KEYS)
        grid = root.at("grid")
        grid.allow_only(("width", "height"))
        self._root = root
        self._width = grid.at("width").integer(1, 1000)
        self._height = grid.at("height").integer(1, 1000)
        symmetry = root.find("symmetry")
        if symmetry and symmetry.raw not in ("left", "right", "top", "bottom"):
            raise symmetry.fail('none of "left", "right", "top" and "bottom"')
        size = root.find("elementSize")
        if size:
            size.number(1e-6, 1e6)
        self._read_load_cases(root.find("loadCases"))
        self._largest_force = 0.0

    def scene(self, name: str) -> Scene:
        root = self._root
        if root.find("densities") and not root.find("volumeFraction"):
            raise root.fail('"volumeFraction" is missing: the scene is one to be scored, by '
                            '"voxam score" or by voxam.Game, and this optimises')
        for key in ("loads", "supports", "volumeFraction"):
            root.at(key)
        title = root.find("title")
        if title and len(title.text()) > _MAX_TITLE:
            raise title.fail(f"is longer than {_MAX_TITLE} characters")
        for key in ("$schema", "description"):
            text = root.find(key)
            if text:
                text.text()
        iterations = self._count(root, "iterations", 1000000, 100)
        timeline = root.find("timeline")
        values = timeline.elements() if timeline else []
        if timeline and len(values) > _MAX_CHANGES:
            raise timeline.fail(f"{len(values)} changes, the limit is {_MAX_CHANGES}")
        changes: List[Change] = []
        for value in values:
            changes.append(self._change(value, changes[-1].iteration if changes else 1, iterations))
        settings = {"penalty": 3.0, **self._settings(root)}
        self._check_details(settings, changes, values)
        return Scene(
            title.text() if title else name, self._width, self._height, self._load_cases,
            iterations, settings=settings, timeline=tuple(changes),
            largest_force=self._largest_force, load_case_names=self._names,
            load_case_weights=self._weights, **self._refinement(root))

    def scored(self, name: str, folder: pathlib.Path) -> ScoredScene:
        root = self._root
        title, used = root.find("title"), root.find("loadCasesInUse")
        return ScoredScene(
            title.text() if title else name, self._width, self._height, self._load_cases,
            self._cases(used) if used else list(range(self._load_cases)),
            self._loads(root.at("loads")), self._supports(root.at("supports")),
            self._densities(root.at("densities"), folder), self._names, self._weights)

    def _read_load_cases(self, value: Optional[_Value]) -> None:
        """A number of load cases, or a list of them."""
        self._load_cases = 1
        cases: List[_Value] = []
        if value and isinstance(value.raw, list):
            cases = value.elements()
            self._load_cases = len(cases)
            if not cases:
                raise value.fail("at least one load case is needed")
            if len(cases) > _MAX_LOAD_CASES:
                raise value.fail(f"{len(cases)} load cases, the limit is {_MAX_LOAD_CASES}")
        elif value:
            if isinstance(value.raw, bool) or not isinstance(value.raw, (int, float)):
                raise value.fail("a whole number or an array of load cases is needed")
            self._load_cases = value.integer(1, _MAX_LOAD_CASES)
        for case in cases:
            case.allow_only(("name", "weight"))
        names, weights = ([case.find(key) for case in cases] or [None] * self._load_cases
                          for key in ("name", "weight"))
        self._names = tuple(self._load_case_name(name) if name else "" for name in names)
        self._weights = tuple(float(weight.number(0.001, 1000)) if weight else 1.0
                              for weight in weights)

    @staticmethod
    def _load_case_name(value: _Value) -> str:
        name = value.text()
        if not name.strip(" "):
            raise value.fail("is blank")
        if _CONTROL.search(name):
            raise value.fail("contains a line break or another control character")
        if len(name) > _MAX_LOAD_CASE_NAME:
            raise value.fail(f"is longer than {_MAX_LOAD_CASE_NAME} characters")
        return name

    def _densities(self, value: _Value, folder: pathlib.Path) -> npt.NDArray[np.float32]:
        if isinstance(value.raw, dict):
            value.allow_only(("png", "csv"))
            if len(value.raw) != 1:
                raise value.fail('either "png" or "csv" is needed')
            (key,) = value.raw
            try:
                array = read_design(folder / value.at(key).text(), self._width, self._height)
            except ValueError as error:
                raise value.fail(str(error)) from None
        elif isinstance(value.raw, list):
            rows = [self._density_row(row) for row in value.elements()]
            if len({len(row) for row in rows}) != 1:
                raise value.fail("rows of one length are needed")
            array = np.array(rows, np.float32)
        else:
            array = np.full((self._height, self._width), value.number(0, 1), np.float32)
        if array.shape != (self._height, self._width):
            raise value.fail(f"{array.shape[1]} x {array.shape[0]} densities for {self._width} x "
                             f'{self._height} elements; finer designs are for "voxam score"')
        return array

    @staticmethod
    def _density_row(row: _Value) -> List[float]:
        if not isinstance(row.raw, str):
            return [density.number(0, 1) for density in row.elements()]
        if set(row.raw) - set("#.0123456789"):
            raise row.fail('characters "#", "." and digits are needed')
        return [1.0 if c == "#" else 0.0 if c == "." else int(c) / 10 for c in row.raw]

    @staticmethod
    def _count(value: _Value, key: str, most: int, default: int) -> int:
        found = value.find(key)
        return found.integer(1, most) if found else default

    def _refinement(self, value: _Value) -> Dict[str, int]:
        return {"subdivision": self._count(value, "subdivision", 16, 1),
                "mesh_factor": self._count(value, "meshFactor", 16, 1)}

    def _change(self, value: _Value, after: int, iterations: int) -> Change:
        value.allow_only(("iteration", "restart", *_SETTINGS))
        iteration = value.at("iteration").integer(after + 1, iterations)
        restart = value.find("restart")
        settings = self._settings(value)
        if not restart and not settings:
            raise value.fail("changes nothing")
        return Change(iteration, settings, self._restart(restart) if restart else None)

    def _check_details(self, settings: Dict[str, Any], changes: Sequence[Change],
                       values: Sequence[_Value]) -> None:
        """The detail has to go with the rest of the scene, from the start to the last change."""
        detail = self._refinement(self._root)
        settings = dict(settings)
        self._check_detail(self._root, settings, **detail)
        for change, value in zip(changes, values):
            settings.update(change.settings)
            if change.restart and "keep_design" not in change.restart:
                detail = change.restart
            self._check_detail(value, settings, **detail)

    def _check_detail(self, value: _Value, settings: Dict[str, Any], subdivision: int,
                      mesh_factor: int) -> None:
        for what, refinement, most in (
                ("design", subdivision, _MAX_DESIGN_CELLS),
                ("picture", subdivision * mesh_factor, _MAX_PICTURE_CELLS)):
            columns, rows = self._width * refinement, self._height * refinement
            if columns * rows > most or max(columns, rows) > _MAX_FINE_SIDE:
                raise value.fail(f"refines the {what} to {columns} x {rows} cells; the limits "
                                 f"are {most} cells, and {_MAX_FINE_SIDE} along a side")
        has_cells = any(np.any(settings.get(key, False) if settings.get(key) is not None else False)
                        for key in ("blob", *_PASSIVE_KINDS.values()))
        fault = placement_fault(has_cells, subdivision, mesh_factor, "meshFactor")
        if fault:
            raise value.fail(fault)

    def _restart(self, value: _Value) -> Dict[str, Any]:
        value.allow_only(("design", "subdivision", "meshFactor"))
        design = value.at("design")
        if design.raw == "keep":
            value.allow_only(("design",))
            return {"keep_design": True}
        if design.raw != "new":
            raise design.fail('neither "new" nor "keep"')
        return self._refinement(value)

    def _settings(self, value: _Value) -> Dict[str, Any]:
        readers: Dict[str, Callable[[_Value], Dict[str, Any]]] = {
            "loads": lambda found: {"loads": self._loads(found)},
            "supports": lambda found: {"supports": self._supports(found)},
            "volumeFraction": lambda found: {"volume_fraction": found.number(0.01, 1)},
            "penalty": lambda found: {"penalty": found.number(1, 10)},
            "passive": self._passive,
            "blob": lambda found: {"blob": self._shapes(found)},
            "loadCasesInUse": lambda found: {"load_cases_in_use": self._cases(found)},
        }
        settings: Dict[str, Any] = {}
        for key, read in readers.items():
            found = value.find(key)
            if found:
                settings.update(read(found))
        return settings

    def _loads(self, value: _Value) -> List[Load]:
        loads: List[Load] = []
        for load in value.elements():
            load.allow_only(("x", "y", "fx", "fy", "loadCase"))
            if "fx" not in load.raw and "fy" not in load.raw:
                raise load.fail("a force is needed: fx, fy or both")
            nodes = self._nodes(load, len(loads))
            found = [load.find("fx"), load.find("fy")]
            forces = [force.number(-1e6, 1e6) if force else 0.0 for force in found]
            case = load.find("loadCase")
            load_case = case.integer(0, self._load_cases - 1) if case else 0
            factor = math.sqrt(self._weights[load_case])
            self._largest_force = max([self._largest_force,
                                       *(abs(force) * factor for force in forces)])
            fx, fy = (force / len(nodes) for force in forces)
            loads += [Load(x, y, fx, fy, load_case) for x, y in nodes]
        if not loads:
            raise value.fail("at least one load is needed")
        return loads

    def _supports(self, value: _Value) -> List[Support]:
        supports: List[Support] = []
        for support in value.elements():
            support.allow_only(("x", "y", "fix"))
            fix = support.at("fix")
            if fix.raw not in ("x", "y", "xy"):
                raise fix.fail('not one of "x", "y", "xy"')
            supports += [Support(x, y, fix.raw) for x, y in self._nodes(support, len(supports))]
        return supports

    def _nodes(self, value: _Value, before: int) -> List[Tuple[int, int]]:
        columns, rows = value.at("x").range(self._width), value.at("y").range(self._height)
        if before + len(columns) * len(rows) > _MAX_NODES:
            raise value.fail(f"more than {_MAX_NODES} nodes in all")
        return [(x, y) for x in columns for y in rows]

    def _cases(self, value: _Value) -> List[int]:
        cases = sorted({case.integer(0, self._load_cases - 1) for case in value.elements()})
        if not cases:
            raise value.fail("at least one load case is needed")
        return cases

    def _passive(self, value: _Value) -> Dict[str, Any]:
        if isinstance(value.raw, list):
            return self._drawing(value)
        value.allow_only(tuple(_PASSIVE_KINDS))
        masks: Dict[str, Any] = {}
        taken = np.zeros((self._height, self._width), bool)
        for key, kind in _PASSIVE_KINDS.items():
            found = value.find(key)
            masks[kind] = mask = self._shapes(found) if found else None
            if found and mask is not None:
                if np.any(mask & taken):
                    y, x = np.argwhere(mask & taken)[0]
                    raise found.fail(f"element x {x}, y {y} is of another kind already")
                taken |= mask
        return masks

    def _drawing(self, value: _Value) -> Dict[str, Any]:
        rows = value.elements()
        for row in rows:
            if len(row.text()) != self._width or set(row.text()) - set(".o#2"):
                raise row.fail(f'{self._width} characters ".", "o", "#" or "2" are needed')
        if len(rows) != self._height:
            raise value.fail(f"{self._height} rows are needed, not {len(rows)}")
        drawing = np.array([list(row.text()) for row in rows])
        masks = {kind: drawing == character for character, kind in _PASSIVE_CHARACTERS.items()}
        for mask in masks.values():
            self._check_cells(value, mask)
        return masks

    def _shapes(self, value: _Value) -> npt.NDArray[np.bool_]:
        mask = np.zeros((self._height, self._width), bool)
        for shape in value.elements():
            shape.allow_only(("x", "y", "radius"))
            radius = shape.find("radius")
            if radius:
                mask |= self._ring(shape, radius)
            else:
                columns = shape.at("x").range(self._width - 1)
                rows = shape.at("y").range(self._height - 1)
                mask[rows.start:rows.stop, columns.start:columns.stop] = True
        self._check_cells(value, mask)
        return mask

    @staticmethod
    def _check_cells(value: _Value, mask: npt.NDArray[np.bool_]) -> None:
        count = np.count_nonzero(mask)
        if count > _MAX_CELLS:
            raise value.fail(f"{count} elements, the limit is {_MAX_CELLS}")

    def _ring(self, shape: _Value, radius: _Value) -> npt.NDArray[np.bool_]:
        inner, outer = radius.numbers(lambda value: value.number(0, 2000))
        if not isinstance(radius.raw, list):
            inner = 0
        y, x = np.arange(self._height)[:, np.newaxis] + 0.5, np.arange(self._width) + 0.5
        centre = shape.at("x").number(0, self._width), shape.at("y").number(0, self._height)
        distance = np.hypot(x - centre[0], y - centre[1])
        ring = (distance >= inner) & (distance < outer)
        if not ring.any():
            raise shape.fail("has no element of the grid")
        return np.asarray(ring)
