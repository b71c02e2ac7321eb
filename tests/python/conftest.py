import csv
import os
import pathlib
import subprocess

import numpy as np
import pytest

import voxam

ROOT = pathlib.Path(__file__).resolve().parents[2]
PACKAGE = ROOT / "hosts" / "python"
SCENES = ROOT / "scenes"


def wall(height):
    return [voxam.Support(0, y) for y in range(height + 1)]


def cantilever(width, height):
    """Loads and supports of a plate that is clamped at the left and pulled down at the right."""
    return [voxam.Load(width, height // 2, fy=1)], wall(height)


def history(scene, folder, *options):
    """What the program says of the iterations of a scene."""
    table = folder / "history.csv"
    program = os.environ["VOXAM_PROGRAM"]
    subprocess.run([program, "optimise", scene, "--history", table, *options], check=True,
                   capture_output=True)
    with open(table, newline="") as stream:
        return [{key: float(value) for key, value in row.items()}
                for row in csv.DictReader(stream)]


@pytest.fixture
def plate():
    """An optimiser of 12 x 8 elements that has its problem, at (2, 2)."""
    with voxam.Optimiser(12, 8, volume_fraction=0.5, subdivision=2, mesh_factor=2) as optimiser:
        optimiser.update(*cantilever(12, 8))
        yield optimiser


def mask(width, height, *cells):
    """True at the given (x, y)."""
    result = np.zeros((height, width), bool)
    for x, y in cells:
        result[y, x] = True
    return result
