"""What a study runs: a base scene, and what varies in it."""

from __future__ import annotations

import copy
import itertools
import json
import math
import pathlib
import random
import re
from dataclasses import dataclass, field
from typing import (Any, Callable, Dict, Iterable, Iterator, List, Mapping, NamedTuple, Optional,
                    Sequence, Tuple, Union)

from .. import scenes
from ..scenes import SceneError, _Value

KEEP = ("design", "displacements")
_REFINE = "refine"
_STUDY_KEYS = ("$schema", "title", "description", "scene", "combine", "list", "draw", "keep")
_SEGMENT = re.compile(r"\.?([A-Za-z$]\w*)|\[(\d+)\]")
_LARGEST_COUNT = 10_000_000


class StudyError(ValueError):
    """A study that cannot be run. The text names the file and the place."""


class Run(NamedTuple):
    """One run of a study."""

    parameters: Dict[str, Any]  #: the values that vary, by path; columns of the results
    scene: Dict[str, Any]  #: the whole scene, as the object of its JSON file
    problem: str = ""  #: why there is no scene with these values


@dataclass(frozen=True)
class Study:
    """A base scene and what varies in it. Iterating over a study yields its runs, always in the
    same order: for each combination, for each entry of the list, for each draw.

    scene    the base scene: the object of a scene file
    combine  values by path; every combination of them is run
    entries  a list of {path: value}; each is run ("list" in a study file)
    draw     random values by path: a Draw
    keep     what is stored of each run in addition to its numbers: "design", "displacements"
    title    title of the report

    A path leads to any key of a scene, such as "volumeFraction" or "loads[0].x". The path "refine"
    multiplies the grid and every coordinate of the scene by a whole number.
    """

    scene: Mapping[str, Any]
    combine: Mapping[str, Sequence[Any]] = field(default_factory=dict)
    entries: Sequence[Mapping[str, Any]] = ()
    draw: Optional[Draw] = None
    keep: Tuple[str, ...] = ("design",)
    title: str = "Study"

    def __post_init__(self) -> None:
        if isinstance(self.keep, str):
            raise StudyError(f'keep: write a list, such as ["{self.keep}"]')
        if self.draw is not None and not isinstance(self.draw, Draw):
            raise StudyError("draw: a Draw is needed, with keys, count and seed")
        # Plain values, also of NumPy and of ranges, so that results and index can be written.
        for name, given in (("scene", self.scene), ("entries", list(self.entries)),
                            ("combine", {path: _listed(path, values)
                                         for path, values in self.combine.items()})):
            object.__setattr__(self, name, plain(given, name))
        unknown = [name for name in self.keep if name not in KEEP]
        if unknown:
            raise StudyError(f'keep: unknown "{unknown[0]}"; allowed are ' + ", ".join(KEEP))
        if len(self) > _LARGEST_COUNT:
            raise StudyError(f"{len(self)} runs are too many: keep below {_LARGEST_COUNT}")
        for path, values in self.combine.items():
            if not len(values):
                raise StudyError(f'combine: "{path}" has no values: remove it or add a value')
        for entry in self.entries or ({},):  # so that a wrong path is an error before the first run
            drawn = next(iter(self.draw)) if self.draw else {}
            first = {path: values[0] for path, values in self.combine.items()}
            varied(self.scene, {**first, **entry, **drawn})

    def __len__(self) -> int:
        combinations = math.prod(len(values) for values in self.combine.values())
        return combinations * max(1, len(self.entries)) * (self.draw.count if self.draw else 1)

    def __iter__(self) -> Iterator[Run]:
        grid = itertools.product(*self.combine.values())
        draws: Iterable[Dict[str, Any]] = self.draw or Draw({}, 1)
        for values, entry, drawn in itertools.product(grid, self.entries or ({},), draws):
            parameters = {**dict(zip(self.combine, values)), **entry, **drawn}
            try:
                yield Run(parameters, varied(self.scene, parameters))
            except StudyError as error:
                yield Run(parameters, {}, str(error))

    def require_a_valid_scene(self) -> None:
        """Refuses a study none of whose scenes can be read: most likely a path is misspelt."""
        first_error = None
        for number, entry in enumerate(self, 1):
            try:
                if entry.problem:
                    raise StudyError(f"run {number}: {entry.problem}")
                scenes.scene_of(entry.scene, f"run {number}")
                return
            except ValueError as error:
                first_error = first_error or error
        raise StudyError(f"no scene of the study can be run: {first_error}")

    def document(self) -> Dict[str, Any]:
        """The study as the object of a study file."""
        draw = {"draw": self.draw.document()} if self.draw else {}
        return {"title": self.title, "scene": self.scene, "combine": self.combine,
                "list": list(self.entries), "keep": list(self.keep), **draw}


@dataclass(frozen=True)
class Draw:
    """Random values. Draw i depends on the seed and i alone: a higher count adds runs and leaves
    the others as they are.

    keys  by path: {"from": a, "to": b}, with "whole": True for whole numbers, or
          {"choose": [values]}
    """

    keys: Mapping[str, Mapping[str, Any]]
    count: int
    seed: int = 0

    def __post_init__(self) -> None:
        object.__setattr__(self, "keys", plain(self.keys, "draw"))
        for path, rule in self.keys.items():
            if not isinstance(rule, dict) or not (rule.get("choose")
                                                  or {"from", "to"} <= set(rule)):
                raise StudyError(f'draw: "{path}": write {{"from": a, "to": b}} or '
                                 '{"choose": [values]}')

    def __iter__(self) -> Iterator[Dict[str, Any]]:
        for i in range(self.count):
            # Python guarantees this sequence for all versions; NumPy does not guarantee its own.
            source = random.Random(f"{self.seed}/{i}")
            yield {path: _drawn(source, rule) for path, rule in self.keys.items()}

    def document(self) -> Dict[str, Any]:
        return {"count": self.count, "seed": self.seed, "keys": self.keys}


def _drawn(source: random.Random, rule: Mapping[str, Any]) -> Any:
    share = source.random()
    if "choose" in rule:
        return rule["choose"][int(share * len(rule["choose"]))]
    first, last = rule["from"], rule["to"]
    if rule.get("whole"):
        return int(first) + int(share * (int(last) - int(first) + 1))
    return first + share * (last - first)


def varied(scene: Mapping[str, Any], parameters: Mapping[str, Any]) -> Dict[str, Any]:
    """The scene with other values at some paths."""
    document = copy.deepcopy(dict(scene))
    for path, value in parameters.items():
        if path != _REFINE:
            _set(document, path, copy.deepcopy(value))
    if _REFINE not in parameters:
        return document
    try:
        return refined(document, parameters[_REFINE])
    except (TypeError, AttributeError):
        return document  # it is no scene: the run fails with the reader's message


def _set(document: Any, path: str, value: Any) -> None:
    steps = _steps(path)
    place, so_far = document, ""
    for step in steps[:-1]:
        place = _at(place, step, path, so_far)
        so_far += f"[{step}]" if isinstance(step, int) else ("." if so_far else "") + step
    last = steps[-1]
    if isinstance(last, int):
        _at(place, last, path, so_far)
    elif not isinstance(place, dict):
        raise StudyError(f"{path}: {so_far or 'the scene'} is no object")
    place[last] = value


def _at(place: Any, step: Union[int, str], path: str, so_far: str) -> Any:
    if isinstance(step, int):
        if not isinstance(place, list):
            raise StudyError(f"{path}: {so_far} is no list")
        if step >= len(place):
            last = len(place) - 1
            raise StudyError(f"{path}: {so_far} has no entry {step}: "
                             + (f"write 0 to {last}" if last > 0 else
                                "write 0" if last == 0 else "add it to the scene"))
    elif not isinstance(place, dict) or step not in place:
        name = f"{so_far}.{step}" if so_far else step
        raise StudyError(f'{path}: the scene has no "{name}": add it to the scene')
    return place[step]


def _steps(path: str) -> List[Union[int, str]]:
    steps: List[Union[int, str]] = []
    position = 0
    while position < len(path):
        found = _SEGMENT.match(path, position)
        if not found or (found[0].startswith(".") == (position == 0) and not found[2]):
            break
        steps.append(int(found[2]) if found[2] else found[1])
        position = found.end()
    if position < len(path) or not steps or isinstance(steps[0], int):
        raise StudyError(f'"{path}" is no path: write it as volumeFraction or loads[0].x')
    return steps


def refined(document: Mapping[str, Any], factor: Any) -> Dict[str, Any]:
    """The scene on a grid that is finer by a whole number, with everything where it was. A range of
    nodes covers the new nodes within it."""
    if isinstance(factor, bool) or not isinstance(factor, int) or factor < 1:
        raise StudyError(f"refine: {factor!r} is not a whole number of at least 1")
    times: Callable[[Any], Any] = lambda value: _scaled(value, factor)
    result = dict(document)
    if isinstance(result.get("grid"), dict):
        result["grid"] = {key: times(value) for key, value in result["grid"].items()}
    for key in ("loads", "supports"):
        if key in result:
            result[key] = [{**entry, **{axis: times(entry[axis]) for axis in "xy" if axis in entry}}
                           for entry in result[key]]
    if "blob" in result:
        result["blob"] = [_refined_shape(shape, factor) for shape in result["blob"]]
    passive = result.get("passive")
    if isinstance(passive, dict):
        result["passive"] = {kind: [_refined_shape(shape, factor) for shape in shapes]
                             for kind, shapes in passive.items()}
    elif passive is not None:
        result["passive"] = ["".join(character * factor for character in row)
                             for row in passive for _ in range(factor)]
    if "timeline" in result:
        result["timeline"] = [refined(change, factor) for change in result["timeline"]]
    return result


def _scaled(value: Any, factor: int) -> Any:
    return [_scaled(part, factor) for part in value] if isinstance(value, list) else value * factor


def _refined_shape(shape: Mapping[str, Any], factor: int) -> Dict[str, Any]:
    if "radius" in shape:
        return {key: _scaled(value, factor) for key, value in shape.items()}
    cells = {}
    for axis, value in shape.items():
        first, last = value if isinstance(value, list) else (value, value)
        cells[axis] = [first * factor, (last + 1) * factor - 1]
    return cells


def read_study(file: Union[str, "pathlib.Path"]) -> Study:
    """Reads a study file. Raises StudyError, whose text names file and place, or OSError."""
    path = pathlib.Path(file)
    try:
        root = _Value(scenes.read_document(path), str(path), "")
        return _study(root, path)
    except SceneError as error:
        raise StudyError(str(error)) from None


def _study(root: _Value, path: pathlib.Path) -> Study:
    root.allow_only(_STUDY_KEYS)
    title, keep = root.find("title"), root.find("keep")
    combine, entries, draw = (root.find(key) for key in ("combine", "list", "draw"))
    parts: Dict[str, Any] = {
        "combine": {key: _values(value) for key, value in _members(combine)},
        "entries": [{key: value.raw for key, value in _members(entry)}
                    for entry in entries.elements()] if entries else [],
        "draw": _draw(draw) if draw else None,
    }
    if not any(parts.values()):
        raise root.fail("nothing varies: add combine, list or draw")
    _require_different(root, parts)
    try:
        study = Study(
            scene=_base_scene(root.at("scene"), path), **parts,
            keep=tuple(value.text() for value in keep.elements()) if keep else ("design",),
            title=title.text() if title else path.stem)
        study.require_a_valid_scene()
        return study
    except SceneError:
        raise
    except StudyError as error:
        raise root.fail(str(error)) from None


def _require_different(root: _Value, parts: Mapping[str, Any]) -> None:
    """Refuses a path that two of the keys vary: the later one would win without a word."""
    names = [set(parts["combine"]), {path for entry in parts["entries"] for path in entry},
             set(parts["draw"].keys) if parts["draw"] else set()]
    for one, other in itertools.combinations(names, 2):
        for path in sorted(one & other):
            raise root.fail(f'"{path}" is in two of combine, list and draw: keep one')


def _members(value: Optional[_Value]) -> Iterable[Tuple[str, _Value]]:
    if value is None:
        return []
    if not isinstance(value.raw, dict):
        raise value.fail("an object of paths is needed")
    return [(key, value.at(key)) for key in value.raw]


def _base_scene(value: _Value, path: pathlib.Path) -> Dict[str, Any]:
    """The scene in the study, or in the file that it names, relative to the study."""
    document = value.raw
    if isinstance(document, str):
        document = scenes.read_document(path.parent / document)
    if not isinstance(document, dict):
        raise value.fail("a scene or the path of a scene file is needed")
    return document


def _values(value: _Value) -> List[Any]:
    """An array, or from, to and either count or step."""
    if isinstance(value.raw, list):
        return list(value.raw)
    if not isinstance(value.raw, dict):
        raise value.fail("write a list of values, or an object with from, to and step")
    value.allow_only(("from", "to", "count", "step"))
    first, last = (value.at(key).number(-1e9, 1e9) for key in ("from", "to"))
    count, step = value.find("count"), value.find("step")
    if (count is None) == (step is None):
        raise value.fail("remove one of count and step" if count else "add count or step")
    if step:
        width = step.number(-1e9, 1e9)
        if width == 0:
            raise step.fail("0 is no distance between values")
        if (last - first) / width < 0:
            raise step.fail(f"{width:g} does not lead from {first:g} to {last:g}")
        steps = math.floor((last - first) / width * (1 + 1e-12) + 1e-9) + 1
        if steps > _LARGEST_COUNT:
            raise step.fail(f"{width:g} is too small: it makes {steps} values")
        return [_tidy(first + i * width) for i in range(steps)]
    assert count is not None
    pieces = count.integer(1, _LARGEST_COUNT) - 1
    return [_tidy(first + (last - first) * i / pieces) if pieces else first
            for i in range(pieces + 1)]


def _tidy(number: float) -> float:
    """Without the digits that sums in binary leave: 0.1 * 3 is 0.3 for a reader."""
    return number if isinstance(number, int) else float(f"{number:.12g}")


def _draw(value: _Value) -> Draw:
    value.allow_only(("count", "seed", "keys"))
    seed = value.find("seed")
    keys = {}
    for path, rule in _members(value.at("keys")):
        if not isinstance(rule.raw, dict):
            raise rule.fail('write {"from": a, "to": b} or {"choose": [values]}')
        rule.allow_only(("from", "to", "whole", "choose"))
        choose = rule.find("choose")
        if choose:
            rule.allow_only(("choose",))
            if not choose.elements():
                raise choose.fail("at least one value is needed")
        else:
            whole = rule.find("whole")
            if whole and not isinstance(whole.raw, bool):
                raise whole.fail("true or false is needed")
            ends = [rule.at(key) for key in ("from", "to")]
            first, last = (end.integer(-10**9, 10**9) if whole and whole.raw
                           else end.number(-1e9, 1e9) for end in ends)
            if first > last:
                raise rule.fail(f"from {first:g} is above to {last:g}: exchange them")
        keys[path] = rule.raw
    if not keys:
        raise value.fail("keys: at least one path is needed")
    return Draw(keys, value.at("count").integer(1, _LARGEST_COUNT),
                seed.integer(0, 2**53) if seed else 0)


def canonical(document: Any) -> str:
    """The one text of a document: the same for equal documents, whatever their order of keys.
    Raises StudyError when it cannot be written as JSON."""
    try:
        return json.dumps(document, sort_keys=True, separators=(",", ":"), allow_nan=False,
                          default=_plain)
    except (TypeError, ValueError) as error:
        raise StudyError(f"a scene cannot be written as JSON: {error}") from None


def plain(value: Any, place: str) -> Any:
    """A copy in types of JSON alone. Raises StudyError."""
    try:
        return json.loads(json.dumps(value, default=_plain))
    except (TypeError, ValueError) as error:
        raise StudyError(f"{place}: {error}") from None


def _listed(path: str, values: Any) -> List[Any]:
    if isinstance(values, (str, Mapping)) or not hasattr(values, "__iter__"):
        raise StudyError(f'combine: "{path}": a list of values is needed')
    return list(values)


def _plain(value: Any) -> Any:
    """NumPy's numbers and arrays, which a generator of scenes may contain."""
    if hasattr(value, "tolist"):
        return value.tolist()
    raise TypeError(f"{type(value).__name__} is not a type of JSON")
