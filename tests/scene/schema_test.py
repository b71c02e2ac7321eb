"""The schema of scenes, against the shipped scenes and against the program's reader.

usage: schema_test.py PROGRAM SCENES
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

PROGRAM, SCENES = sys.argv[1], pathlib.Path(sys.argv[2])
SCHEMA = json.loads((SCENES / "scene.schema.json").read_text())

SOUND = {
    "$schema": "scene.schema.json",
    "title": "t", "description": "d",
    "grid": {"width": 4, "height": 2},
    "loadCases": 2, "loadCasesInUse": [0, 1],
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

# A path into the scene, what to put there, and whether the result is sound. DELETE takes it away.
DELETE = object()
CHANGES = [
    (["passive"], ["...o", "2#.."], True),
    (["passive"], ["...x", "...."], False),
    (["passive", "void", 0, "x"], "1", False),
    (["passive", "voids"], [], False),
    (["densities"], 0.5, True),
    (["densities"], 1.5, False),
    (["densities"], {"jpg": "a"}, False),
    (["densities", 0], "##x.", False),
    (["densities", 1, 0], 2, False),
    (["blob", 0, "radius"], -1, False),
    (["blob", 0, "radius"], [1], False),
    (["title"], 3, False),
    (["colour"], 3, False),
    (["grid", "width"], 0, False),
    (["grid", "width"], 1001, False),
    (["grid", "depth"], 1, False),
    (["grid"], DELETE, False),
    (["loads"], DELETE, False),
    (["loads"], [], False),
    (["loads", 1, "fy"], DELETE, False),
    (["loads", 0, "fx"], DELETE, True),
    (["loads", 0, "fx"], 1e7, False),
    (["loads", 0, "x"], -1, False),
    (["loads", 0, "x"], [1, 2, 3], False),
    (["loads", 0, "loadCase"], 0.5, False),
    (["loads", 0, "force"], 1, False),
    (["supports"], DELETE, False),
    (["supports", 0, "fix"], "XY", False),
    (["supports", 0, "fix"], DELETE, False),
    (["loadCases"], 65, False),
    (["loadCasesInUse"], [], False),
    (["volumeFraction"], 0, False),
    (["volumeFraction"], 0.01, True),
    (["penalty"], 11, False),
    (["subdivision"], 17, False),
    (["iterations"], 0, False),
    (["timeline", 0, "iteration"], 1, False),
    (["timeline", 0, "iteration"], DELETE, False),
    (["timeline", 0], {"iteration": 2}, False),
    (["timeline", 0, "grid"], {}, False),
    (["timeline", 0, "restart", "subdivision"], 2, False),
    (["timeline", 1, "restart", "design"], "old", False),
]


def changed(path, value):
    scene = copy.deepcopy(SOUND)
    target = scene
    for key in path[:-1]:
        target = target[key]
    if value is DELETE:
        del target[path[-1]]
    else:
        target[path[-1]] = value
    return scene


def complaint(scene, directory):
    """What the program says of a scene that it cannot read, else nothing."""
    file = pathlib.Path(directory) / "s.json"
    file.write_text(json.dumps(scene))
    done = subprocess.run([PROGRAM, "score", str(file)], capture_output=True, text=True)
    return done.stderr if done.returncode == 2 else ""


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
        for path, value, sound in [(["title"], "t", True)] + CHANGES:
            scene = changed(path, value)
            told = complaint(scene, directory)
            if schema.is_valid(scene) != sound:
                faults.append(f"{path}: the schema does not take it for {sound}")
            if (told == "") != sound:
                faults.append(f"{path}: the reader does not take it for {sound}: {told}")
        # A new key of the reader is to be in the schema.
        told = complaint(changed(["nosuchkey"], 1), directory)
        listed = set(re.search(r"allowed keys: (.*)", told).group(1).split(", "))
        if listed != set(SCHEMA["properties"]):
            faults.append(f"keys differ: {listed ^ set(SCHEMA['properties'])}")

    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
