"""Scenes, against the program that they are written for."""

import json

import numpy as np
import pytest
from conftest import SCENES, history

from voxam import ProblemError, scenes

# Every key that the optimiser reads, and the changes that a timeline can make.
CHANGEFUL = {
    "title": "Changes",
    "grid": {"width": 24, "height": 16},
    "volumeFraction": 0.45,
    "iterations": 40,
    "subdivision": 2,
    "meshFactor": 2,
    "penalty": 2.5,
    "loadCases": 3,
    "loadCasesInUse": [0, 2],
    "loads": [
        {"x": 24, "y": [6, 9], "fy": 200},
        {"x": 20, "y": 0, "fx": 100, "fy": -50, "loadCase": 2},
    ],
    "supports": [{"x": 0, "y": [0, 16], "fix": "x"}, {"x": [0, 1], "y": 16, "fix": "y"}],
    "passive": {
        "void": [{"x": 12, "y": 8, "radius": 2}],
        "solid": [{"x": 12, "y": 8, "radius": [2, 3]}],
        "secondSolid": [{"x": [22, 23], "y": [7, 8]}],
    },
    "blob": [{"x": [5, 7], "y": [3, 5]}],
    "timeline": [
        {"iteration": 8, "volumeFraction": 0.4, "penalty": 3},
        {"iteration": 11, "penalty": 3.5},
        {"iteration": 14, "restart": {"design": "keep"}},
        {"iteration": 18, "supports": []},
        {"iteration": 22, "supports": [{"x": 0, "y": [0, 16], "fix": "xy"}], "blob": []},
        {"iteration": 26, "restart": {"design": "new", "subdivision": 1, "meshFactor": 1},
         "passive": ["." * 22 + "2#"] * 15 + ["o" * 24]},
        {"iteration": 32, "loads": [{"x": 24, "y": 4, "fy": 300}], "loadCasesInUse": [0]},
    ],
}


@pytest.fixture
def write(tmp_path):
    """Writes a scene: the one above, but for these keys, or another text."""
    def write_scene(text=None, **changes):
        file = tmp_path / "scene.json"
        file.write_text(text or json.dumps({**CHANGEFUL, **changes}))
        return file
    return write_scene


def check_against_program(file, folder, iterations, move_blob=False):
    options = ["--iterations", str(iterations)] + ["--blob"] * move_blob
    rows = history(file, folder, *options)
    ours = list(scenes.run(scenes.read_scene(file), iterations, move_blob))
    assert [row["iteration"] for row in rows] == [number for number, _ in ours]
    for row, (_, result) in zip(rows, ours):
        assert result.compliance == pytest.approx(row["compliance"], rel=1e-6)
        assert result.change == pytest.approx(row["change"], rel=1e-4, abs=1e-7)
        assert result.volume == pytest.approx(row["volume"], rel=1e-6)
    return ours


@pytest.mark.parametrize("name", ["optimise-cantilever", "bridge-two-cases", "l-bracket", "wheel"])
def test_gives_the_compliances_of_the_program(name, tmp_path):
    check_against_program(SCENES / f"{name}.json", tmp_path, 12)


@pytest.mark.parametrize("move_blob", [False, True])
def test_follows_a_timeline_as_the_program_does(move_blob, tmp_path, write):
    ours = check_against_program(write(), tmp_path, 40, move_blob)
    numbers = [number for number, _ in ours]
    assert set(range(1, 41)) - set(numbers) == set(range(18, 22))  # nothing held the plate
    assert ours[0][1].picture.shape == (64, 96)
    assert ours[-1][1].picture.shape == (16, 24)


def test_raises_what_no_change_can_mend(write):
    with pytest.raises(ProblemError):
        list(scenes.run(scenes.read_scene(write(supports=[], timeline=[]))))


def test_reads_discs_rings_and_drawings_alike(write):
    settings = scenes.read_scene(write()).settings
    drawing = np.full((16, 24), ".")
    for kind, character in ("void", "o"), ("solid", "#"), ("second_solid", "2"):
        drawing[settings[kind]] = character
    assert "".join(drawing[8]) == ".........#oooo#.......22"
    drawn = scenes.read_scene(write(passive=["".join(row) for row in drawing])).settings
    for kind in "void", "solid", "second_solid":
        assert np.array_equal(drawn[kind], settings[kind])


def test_a_ring_begins_where_the_disc_within_it_ends(write):
    passive = {"void": [{"x": 12.5, "y": 8.5, "radius": 2}],
               "solid": [{"x": 12.5, "y": 8.5, "radius": [2, 4]}]}
    settings = scenes.read_scene(write(passive=passive)).settings
    kinds = "".join("o" if settings["void"][8, x] else "#" if settings["solid"][8, x] else "."
                    for x in range(7, 18))
    assert kinds == "..##ooo##.."


@pytest.mark.parametrize("changes, complaint", [
    ({"volumeFracton": 0.4}, 'unknown key "volumeFracton"; did you mean "volumeFraction"?'),
    ({"volumeFraction": 0.001}, "volumeFraction: 0.001 is outside 0.01..1"),
    ({"volumeFraction": "much"}, "volumeFraction: a number is needed"),
    ({"volumeFraction": True}, "volumeFraction: a number is needed"),
    ({"grid": {"width": 24}}, 'grid: "height" is missing'),
    ({"grid": {"width": 24, "height": 0}}, "grid.height: 0 is outside 1..1000"),
    ({"loads": [{"x": 25, "y": 0, "fy": 1}]}, "loads[0].x: 25 is outside 0..24"),
    ({"iterations": 2.5}, "iterations: a whole number is needed: 2.5 is not whole"),
    ({"loads": [{"x": [4, 3], "y": 0, "fy": 1}]}, "loads[0].x: 4 is larger than 3"),
    ({"loads": [{"x": 3, "y": 0, "fy": 1, "loadCase": 3}]}, "loads[0].loadCase: 3 is outside 0..2"),
    ({"loadCases": [{}, {"weight": 0}, {}]}, "loadCases[1].weight: 0 is outside 0.001..1000"),
    ({"loadCases": [{}, {}, {"name": "a\n"}]},
     "loadCases[2].name: contains a line break or another control character"),
    ({"supports": [{"x": 0, "y": 0, "fix": "XY"}]}, 'supports[0].fix: not one of "x", "y", "xy"'),
    ({"passive": {"void": [{"x": 24, "y": 1}]}}, "passive.void[0].x: 24 is outside 0..23"),
    ({"passive": ["." * 24] * 15}, "passive: 16 rows are needed, not 15"),
    ({"blob": [{"x": 0.5, "y": 0, "radius": 0.1}]}, "blob[0]: has no element of the grid"),
    ({"timeline": [{"iteration": 1, "penalty": 3}]}, "timeline[0].iteration: 1 is outside 2..40"),
])
def test_names_file_key_and_value(changes, complaint, write):
    file = write(**changes)
    with pytest.raises(scenes.SceneError) as error:
        scenes.read_scene(file)
    assert str(error.value) == f"{file}: {complaint}"


def test_comments_are_blanks_but_not_in_strings(write):
    text = json.dumps({**CHANGEFUL, "title": 'a // b /* c */ \\"', "$schema": "s"})
    text = "// first\n" + text.replace(', "iterations"', '/* "x": 1,\n */, "iterations"')
    scene = scenes.read_scene(write(text))
    assert scene.title == 'a // b /* c */ \\"' and scene.iterations == 40
    with pytest.raises(scenes.SceneError, match="line 3 column 2"):
        scenes.read_scene(write('/* a\n comment */ {"grid": // b\n oops}'))


@pytest.mark.parametrize("text, complaint", [
    ('{"grid": 1, "grid": 2}', "appears twice"),
    ('{"grid": ', "line 1 column 10"),
    ("[]", "an object is needed"),
    ("[" * 100000, "nested too deeply"),
])
def test_refuses_what_is_no_scene(text, complaint, write):
    with pytest.raises(scenes.SceneError, match=complaint):
        scenes.read_scene(write(text))
