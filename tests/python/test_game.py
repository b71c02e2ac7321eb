"""The scorer, against the program and against its own laws."""

import json
import os
import re
import subprocess

import numpy as np
import pytest
from conftest import SCENES, cantilever, wall

import voxam


def drawn(name):
    scene = json.loads((SCENES / name).read_text())
    tenths = {"#": 1.0, ".": 0.0, **{str(i): i / 10 for i in range(10)}}
    return np.array([[tenths[character] for character in row] for row in scene["densities"]])


def test_scores_what_the_program_scores():
    picture = subprocess.run([os.environ["VOXAM_PROGRAM"], "score", SCENES / "cantilever.json"],
                             check=True, capture_output=True, text=True).stdout
    told = float(re.search(r"compliance +([0-9.e+]+)", picture).group(1))
    densities = drawn("cantilever.json")
    plate = 60, 40, [voxam.Load(60, 20, fy=1)], wall(40)
    with voxam.Analysis(*plate) as analysis:
        assert analysis.solve(densities).compliance == pytest.approx(told, rel=1e-5)
    with voxam.Game(*plate) as game:
        score = game.solve(densities)
        assert score.compliance == pytest.approx(told, rel=1e-2)  # in single precision
        assert score.energies.shape == densities.shape
        assert score.energies.sum() == pytest.approx(score.compliance, rel=1e-4)
        assert np.all(score.energies[densities == 0] < 1e-6 * score.energies.max())


def test_energies_are_indexed_y_x():
    # A strip of unit modulus, pulled along x by a unit stress and free to slide along its end: the
    # energy of each of its elements is 1, and that of the others next to nothing.
    loads = [voxam.Load(6, y, fx=0.5) for y in (2, 3)]
    strip = np.zeros((4, 6))
    strip[2] = 1
    with voxam.Game(6, 4, loads, [voxam.Support(0, 2), voxam.Support(0, 3, "x")]) as game:
        for given in strip, strip.astype(bool), np.asfortranarray(strip), \
                strip.astype(np.float32), strip.tolist():
            score = game.solve(given)
            assert score.compliance == pytest.approx(6, abs=0.01)
            assert np.allclose(score.energies, strip, atol=0.01)


@pytest.mark.parametrize("forces, supports, complaint", [
    ([1], wall(8)[:1], "Hold it in x, in y and against turning"),
    ([1, -1], wall(8), "cancel out"),
    ([1e-24], wall(8), "too small"),
    ([1e19], wall(8), "scale the forces"),
])
def test_says_why_there_is_no_score(forces, supports, complaint):
    loads = [voxam.Load(12, 4, fy=force) for force in forces]
    with voxam.Game(12, 8, loads, supports) as game:
        for _ in range(2):
            with pytest.raises(voxam.ProblemError, match=complaint):
                game.solve(np.ones((8, 12)))


@pytest.mark.parametrize("densities, complaint", [
    (np.ones((3, 2)), r": shape \(3, 2\) is not \(height, width\) = \(2, 3\)"),
    (np.ones(6), r": shape \(6,\)"),
    (np.full((2, 3), np.nan), r"\[0, 0\]: nan is not from 0 .void. to 1"),
    ([[0, 0, 1], [0, 255, 1]], r"\[1, 1\]: 255 is not from 0 .void. to 1"),
    ([[0, 0, -0.1], [0, 2, 1]], r"\[0, 2\]: -0.1 is not from 0 .void. to 1"),
    ([["a"] * 3] * 2, ": an array of numbers"),
    ([[1] * 3, [1] * 2], ": .*inhomogeneous|: an array of numbers"),
    (None, ": an array of numbers"),
    (np.ma.array(np.ones((2, 3)), mask=np.eye(2, 3)), ": some entries of the array are masked"),
])
def test_refuses_wrong_densities(densities, complaint):
    with voxam.Game(3, 2, *cantilever(3, 2)) as game:
        with pytest.raises((ValueError, TypeError), match="^densities" + complaint):
            game.solve(densities)
        assert game.solve(np.ones((2, 3))).compliance > 0


@pytest.mark.parametrize("loads, complaint", [
    ([], "at least one is needed"),
    ([voxam.Load(3, 1)], "none of the 1 does work"),
    ([voxam.Load(0, 0, fx=1), voxam.Load(3, 1, fy=1)], "none of the 2 does work"),
])
def test_refuses_loads_that_would_score_0(loads, complaint):
    supports = wall(2) + [voxam.Support(3, 1, "y")]
    with pytest.raises(ValueError, match="^loads: .*" + complaint):
        voxam.Game(3, 2, loads, supports)
    with voxam.Game(3, 2, [*loads, voxam.Load(3, 1, fx=1)], supports) as game:
        assert game.solve(np.ones((2, 3))).compliance > 0


def test_says_what_to_call_instead_of_an_assignment():
    with voxam.Game(3, 2, *cantilever(3, 2)) as game:
        with pytest.raises(AttributeError, match="Game.loads cannot be assigned: create another"):
            game.loads = []
        assert (game.width, game.height, game.load_cases) == (3, 2, 1)


def test_a_newer_game_takes_the_place_of_an_older_one():
    with pytest.raises(ValueError, match=r"supports\[0\].x: 4 is outside 0..3"):
        voxam.Game(3, 2, [], [voxam.Support(4, 0)])
    game = voxam.Game(3, 2, *cantilever(3, 2))
    newer = voxam.Game(3, 2, *cantilever(3, 2))
    with pytest.raises(voxam.VoxamError, match="this Game was replaced by a newer one"):
        game.solve(np.ones((2, 3)))
    game.close()
    unaligned = np.frombuffer(bytearray(25), np.float32, 6, offset=1).reshape(3, 2).T
    unaligned.fill(1)
    assert newer.solve(unaligned).compliance == newer.solve(np.ones((2, 3))).compliance
    newer.close()
    with voxam.Game(3, 2, *cantilever(3, 2)) as game:
        pass
    with pytest.raises(voxam.VoxamError, match="this Game is closed"):
        game.solve(np.ones((2, 3)))
