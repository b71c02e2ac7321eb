"""What the program says of wrong scenes, and whether the schema and the Python package, which reads
all keys but densities, find them as well.

usage: wrong_scenes_test.py PROGRAM SCENES
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

from voxam import scenes

PROGRAM, SCENES = sys.argv[1], pathlib.Path(sys.argv[2])
SCHEMA = json.loads((SCENES / "scene.schema.json").read_text())

SOUND = {
    "$schema": "scene.schema.json",
    "title": "t", "description": "d",
    "grid": {"width": 4, "height": 2},
    "loadCases": [{"name": "wind"}, {"weight": 2.5}], "loadCasesInUse": [0, 1],
    "loads": [{"x": 4, "y": [0, 2], "fx": 0.5, "fy": 1, "loadCase": 1}, {"x": 4, "y": 1, "fy": 1}],
    "supports": [{"x": 0, "y": [0, 2], "fix": "xy"}],
    "densities": ["##1.", [0, 1, 0.5, 1]],
    "volumeFraction": 0.5, "penalty": 3, "subdivision": 2, "meshFactor": 2, "iterations": 3,
    "passive": {"void": [{"x": 1, "y": 0}], "solid": [{"x": 3, "y": 1, "radius": 0.8}],
                "secondSolid": []},
    "blob": [{"x": 2, "y": 1, "radius": [0, 0.8]}],
    "timeline": [{"iteration": 2, "volumeFraction": 0.6, "restart": {"design": "keep"}},
                 {"iteration": 3, "restart": {"design": "new", "subdivision": 2, "meshFactor": 2}}],
}
WIDE = {"grid": {"width": 1000, "height": 500}, "volumeFraction": 0.5, "supports": [],
        "loads": [{"x": 0, "y": 0, "fx": 1}]}

# A path into the scene, what to put there, and how the error begins that the program tells: behind
# the path, if with a mark. Nothing if the result is sound. DELETE takes away what is there.
DELETE = object()
CHANGES = [
    ("title", "t", ""),
    ("title", 3, ": expected a text, found 3"),
    ("", [], "expected keys in braces {}, found a list in brackets []"),
    ("colour", 3, ": unknown key; allowed keys: $schema, title"),
    ("suports", [], ": unknown key, did you mean supports? allowed keys: $schema, title"),
    ("grid", DELETE, ": missing key"),
    ("grid/width", 0, ": 0 is outside 1..1000"),
    ("grid/width", 1001, ": 1001 is outside 1..1000"),
    ("grid/width", 1e20, ": 1e+20 is outside 1..1000"),
    ("grid/width", 4.0, ""),
    ("grid/width", 4.5, ": expected a whole number, found 4.5"),
    ("grid/width", "4", ': expected a whole number, found the text "4"'),
    ("grid/height", DELETE, ": missing key"),
    ("grid/hight", 1, ": unknown key, did you mean height? allowed keys: width, height"),
    ("loads", DELETE, ": missing key"),
    ("loads", [], ": needs at least one load"),
    ("loads", {}, ": expected a list of loads in brackets [], found keys in braces {}"),
    ("loads/1/fy", DELETE, "loads[1]: needs a force: fx, fy or both"),
    ("loads/0/fx", DELETE, ""),
    ("loads/0/fx", 1e7, ": 10000000 is outside -1000000..1000000"),
    ("loads/0/x", -1, ": -1 is outside 0..4"),
    ("loads/0/x", [1, 2, 3], ": a range has two numbers"),
    ("loads/0/loadCase", 0.5, ": expected a whole number, found 0.5"),
    ("loads/0/force", 1, ": unknown key"),
    ("supports", DELETE, ": missing key"),
    ("supports/0/fix", "z", ': "z" is not one of "x", "y", "xy"'),
    ("supports/0/fix", DELETE, ": missing key"),
    ("densities", 0.5, ""),
    ("densities", 1.5, ": 1.5 is outside 0..1"),
    ("densities", True, ": expected rows, one number for all, {"),
    ("densities", {"jpg": "a"}, ".jpg: unknown key"),
    ("densities/0", "##x.", ": column 2 holds 'x', expected '#' (solid), '.' (void) or a digit"),
    ("densities/0", "\n...", ": column 0 holds another character"),
    ("densities/1/0", 2, ": 2 is outside 0..1"),
    ("passive", ["...o", "2#.."], ""),
    ("passive", ["...x", "...."], "[0]: column 3 holds 'x', expected '.' (free), 'o' (void)"),
    ("passive/void/0/x", "1", ": expected a whole number"),
    ("passive/voids", [],
     ": unknown key, did you mean void? allowed keys: void, solid, secondSolid"),
    ("blob/0/radius", -1, ": -1 is outside"),
    ("blob/0/radius", [1], ": the radii of a ring are two numbers"),
    ("loadCases", 65, ": 65 is outside 1..64"),
    ("loadCases", 2.0, ""),
    ("loadCases", [{}, {"name": "a" * 40, "weight": 1000}], ""),
    ("loadCases", "2", ": expected a whole number or a list of load cases in brackets [], found"),
    ("loadCases", [], ": needs at least one load case"),
    ("loadCases", [{}] * 65, ": 65 load cases, the limit is 64"),
    ("loadCases", [2, 2], "[0]: expected keys in braces {}, found 2"),
    ("loadCases/0/nome", "w", ": unknown key, did you mean name? allowed keys: name, weight"),
    ("loadCases/0/name", 2, ": expected a text, found 2"),
    ("loadCases/0/name", " ", ": is blank"),
    ("loadCases/0/name", "a\nb", ": contains a line break or another control character"),
    ("loadCases/0/name", "b\n", ": contains a line break"),
    ("loadCases/0/name", "ü" * 41, ": is longer than 40 characters"),
    ("loadCases/1/weight", 0, ": 0 is outside 0.001..1000"),
    ("loadCases/1/weight", 1001, ": 1001 is outside 0.001..1000"),
    ("loadCases/1/weight", "2", ": expected a number, found the text"),
    ("loadCasesInUse", [], ": needs at least one load case"),
    ("loadCasesInUse", [-1], "[0]: -1 is outside 0..1"),
    ("volumeFraction", 0, ": 0 is outside 0.01..1"),
    ("volumeFraction", 0.01, ""),
    ("penalty", 11, ": 11 is outside 1..10"),
    ("subdivision", 17, ": 17 is outside 1..16"),
    ("iterations", 0, ": 0 is outside 1..1000000"),
    ("timeline/0/iteration", 1, ": 1 is outside 2..3 (after the change before it, and within the"),
    ("timeline/0/iteration", DELETE, ": missing key"),
    ("timeline/0", {"iteration": 2}, ": changes nothing"),
    ("timeline/0/iterations", 2, ": unknown key, did you mean iteration?"),
    ("timeline/0/volumeFraction", 1.5, ": 1.5 is outside 0.01..1"),
    ("timeline/0/restart/subdivision", 2, ": unknown key; allowed keys: design"),
    ("timeline/1/restart/design", "old", ': "old" is not one of "new", "keep"'),
]
# The same that no schema finds, because one value has to go with another.
CONTRADICTIONS = [
    ("loads/0/x", 5, ": 5 is outside 0..4 (nodes of the grid)"),
    ("loads/0/x", [2, 5], "[1]: 5 is outside 0..4"),
    ("loads/0/x", [3, 2], ": the range runs backwards"),
    ("loads/0/loadCase", 2, ": 2 is outside 0..1 (the scene has 2 load cases)"),
    ("densities/0", "###", ": 3 characters, expected 4 (grid.width)"),
    ("densities/1", [1, 1], ": 2 numbers, expected 4 (grid.width)"),
    ("densities", ["####"] * 4,
     "[0]: 4 characters, expected 8 (grid.width, 2 per element like the rows)"),
    ("densities", [], ": 0 rows, expected 2 (grid.height) or a whole multiple up to 256"),
    ("densities", {"png": "none.png"}, ".png: image none.png: No such file"),
    ("densities", {"png": "s.json"}, ".png: image s.json: "),
    ("passive/void/0/x", 4, ": 4 is outside 0..3 (elements of the grid)"),
    ("passive/solid", [{"x": 0, "y": [0, 2]}], "[0].y[1]: 2 is outside 0..1"),
    ("passive/solid", [{"x": [0, 1], "y": 0}], "[0]: element x 1, y 0 is in passive.void already"),
    ("passive", ["...."], ": 1 row, expected 2 (grid.height)"),
    ("passive", ["....", "..."], "[1]: 3 characters, expected 4"),
    ("blob/0/x", 5, ": 5 is outside 0..4"),
    ("blob", [{"x": 3, "y": 2}], "[0].y: 2 is outside 0..1"),
    ("blob/0/radius", [2, 1], ": the radii run backwards"),
    ("blob/0/radius", [1, 1], "blob[0]: has no element of the grid"),
    ("loadCasesInUse", [0, 2], "[1]: 2 is outside 0..1 (the scene has 2 load cases)"),
    ("meshFactor", 1, "subdivision (2) and meshFactor (1) must be equal"),
    ("timeline/0/blob", [{"x": 9, "y": 0}], "[0].x: 9 is outside 0..3"),
    ("timeline/1/restart", {"design": "new", "subdivision": 16, "meshFactor": 16}, ""),
    ("timeline/1/restart", {"design": "keep", "meshFactor": 2}, ".meshFactor: unknown key"),
    ("timeline", [{"iteration": i, "penalty": 2} for i in range(2, 1003)], ": 1001 changes, the limit"),
    ("", {**WIDE, "timeline": [{"iteration": 2, "restart": {"design": "new", "subdivision": 2}}]},
     "timeline[0].restart.subdivision: refines the design to 2000 x 1000 cells"),
    ("", {**WIDE, "subdivision": 1, "meshFactor": 2, "timeline": [{"iteration": 2, "blob": [{"x": 0, "y": 0}]}]},
     "timeline[0]: subdivision (1) and meshFactor (2) must be equal"),
    ("title", "t" * 201, ": is longer than 200 characters"),
    ("timeline/1/restart/meshFactor", 1, "timeline[1]: subdivision (2) and meshFactor (1) must"),
    ("timeline/1/iteration", 2, ": 2 is outside 3..3 (after the change before it"),
    ("timeline/1/iteration", 4, ": 4 is outside 3..3 (after the change before it"),
    ("timeline/1/loads", [{"x": 5, "y": 0, "fx": 1}], "[0].x: 5 is outside 0..4"),
    ("", {**WIDE, "subdivision": 2}, "subdivision: refines the design to 2000 x 1000 cells"),
    ("", {**WIDE, "loads": [{"x": [0, 1000], "y": [0, 500], "fx": 1}] * 8},
     "loads: 4012008 nodes in all, the limit is 4000000"),
    ("", {**WIDE, "meshFactor": 4}, "meshFactor: refines the picture to 4000 x 2000 cells"),
    ("", {**WIDE, "passive": {"void": [{"x": [0, 99], "y": [0, 327]}]}},
     "passive: 32800 elements, the limit is 32767"),
]


def changed(path, value):
    if path == "":
        return value
    scene = target = copy.deepcopy(SOUND)
    *parents, last = [int(key) if key.isdigit() else key for key in path.split("/")]
    for key in parents:
        target = target[key]
    if value is DELETE:
        del target[last]
    else:
        target[last] = value
    return scene


def error_of(path, told):
    """How the line begins, or nothing."""
    if told and not told[0].isalpha():
        told = re.sub(r"/(\d+)", r"[\1]", path).replace("/", ".") + told
    return told and "voxam: s.json: " + told


def complaint(scene, directory):
    """What the program says of a scene that it cannot read, else nothing."""
    (pathlib.Path(directory) / "s.json").write_text(json.dumps(scene))
    done = subprocess.run([PROGRAM, "score", "s.json"], capture_output=True, text=True,
                          cwd=directory)
    if done.returncode not in (0, 1, 2):
        return f"status {done.returncode}: {done.stderr}"
    return done.stderr if done.returncode == 2 else ""


def is_read_in_python(directory):
    try:
        scenes.read_scene(pathlib.Path(directory) / "s.json")
    except scenes.SceneError:
        return False
    return True


def main():
    validator = jsonschema.Draft202012Validator
    validator.check_schema(SCHEMA)
    schema = validator(SCHEMA)
    faults = []

    shipped = [file for file in SCENES.glob("*.json") if file.name != "scene.schema.json"]
    assert len(shipped) >= 13
    for file in shipped:
        for error in schema.iter_errors(json.loads(file.read_text())):
            faults.append(f"{file.name}: {error.message}")

    with tempfile.TemporaryDirectory() as directory:
        for path, value, told in CHANGES + CONTRADICTIONS:
            expected, found = error_of(path, told), complaint(changed(path, value), directory)
            if not found.startswith(expected) or found.count("\n") != (told != ""):
                faults.append(f"{path} = {value}: not {expected!r}, but {found!r}")
            if not path.startswith("densities") and is_read_in_python(directory) != (told == ""):
                faults.append(f"{path} = {value}: Python does not agree")
        for path, value, told in CHANGES:
            if schema.is_valid(changed(path, value)) != (told == ""):
                faults.append(f"{path} = {value}: the schema does not agree")
        # A new key of the reader is to be in the schema.
        told = complaint(changed("nosuchkey", 1), directory)
        listed = set(re.search(r"allowed keys: (.*)", told).group(1).split(", "))
        if listed != set(SCHEMA["properties"]):
            faults.append(f"keys differ: {listed ^ set(SCHEMA['properties'])}")

    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
