"""A scene means the same to the program, to the window's worker and to this package: to the bit,
at every iteration."""
import csv
import json
import os
import pathlib
import subprocess
from typing import List, NamedTuple, Tuple

import numpy as np
import pytest

from voxam import ProblemError, scenes, study

FOLDER = pathlib.Path(__file__).parent / "scenes"
SHIPPED = pathlib.Path(__file__).parents[2] / "scenes"
PROGRAM, WINDOW = os.environ["VOXAM_PROGRAM"], os.environ["VOXAM_SESSION"]


class Row(NamedTuple):
    iteration: int
    compliance: float
    volume: float
    change: float
    material: bytes


def in_python(file, *, move_blob) -> Tuple[List[Row], str]:
    rows, refusal = [], ""
    try:
        for number, result in scenes.run(scenes.read_scene(file), move_blob=move_blob):
            rows.append(Row(number, result.compliance, result.volume, result.change,
                            result.densities.tobytes()))
    except ProblemError as error:
        refusal = error.text
    return rows, refusal


def in_session(file, folder, options, sizes) -> Tuple[List[Row], str]:
    pictures = folder / "pictures"
    done = subprocess.run([WINDOW, file, pictures, *options], capture_output=True, text=True,
                          check=True)
    # The library prints its version first.
    lines = [line.split(" ", 3) for line in done.stdout.splitlines() if line[0].isdigit()]
    bytes_of_all, at, rows = pictures.read_bytes(), 0, []
    made = [line for line in lines if line[1] != "refused"]
    for (number, *values), size in zip(made, sizes):
        rows.append(Row(int(number), *map(float, values), bytes_of_all[at:at + size]))
        at += size
    assert at == len(bytes_of_all) and len(made) == len(rows)
    is_over = lines[-1][1] == "refused"
    return rows, " ".join(lines[-1][2:]) if is_over else ""


def in_program(file, folder, options, last=None) -> Tuple[List[Row], str]:
    """Of the pictures, the last one alone."""
    history, design = folder / "history.csv", folder / "design.csv"
    count = ["--iterations", str(last)] if last else []
    done = subprocess.run([PROGRAM, "optimise", file, "--history", history, "--design", design,
                           *count, *options], capture_output=True, text=True, check=False)
    assert done.returncode in (0, 1), done.stderr
    with open(history) as stream:
        rows = [Row(int(line["iteration"]), *(float(line[key]) for key in Row._fields[1:4]), b"")
                for line in csv.DictReader(stream)]
    rows[-1] = rows[-1]._replace(material=np.loadtxt(
        design, np.float32, delimiter=",", ndmin=2).tobytes())
    refused = [line for line in done.stderr.splitlines() if ": iteration " in line]
    return rows, refused[-1].split(": ")[-1] if done.returncode == 1 else ""


def variants():
    for file in sorted(FOLDER.glob("*.json")):
        yield pytest.param(file, False, id=file.stem)
        if scenes.read_scene(file).has_blob:
            yield pytest.param(file, True, id=f"{file.stem}-moving")


@pytest.mark.parametrize("file, move_blob", variants())
def test_all_give_the_same(file, move_blob, tmp_path):
    options = ["--blob"] if move_blob else []
    ours, refusal = in_python(file, move_blob=move_blob)
    assert len(ours) >= 4
    assert in_session(file, tmp_path, options, [len(row.material) for row in ours]) \
        == (ours, refusal)
    for i, row in enumerate(ours):
        theirs, _ = in_program(file, tmp_path, options, row.iteration)
        assert theirs == [*(each._replace(material=b"") for each in ours[:i]), row]
    assert in_program(file, tmp_path, options)[1] == refusal


@pytest.mark.parametrize("file", [FOLDER / "details.json", FOLDER / "weights.json",
                                  SHIPPED / "bridge-two-cases.json"],
                         ids=lambda file: file.stem)
def test_a_study_and_the_program_draw_the_same(file, tmp_path):
    """In black and white: the rule for its level stands in both."""
    scene = scenes.read_document(file)
    row, = study.run([scene], tmp_path, processes=1, progress=False).rows()
    done = subprocess.run([PROGRAM, "optimise", file, "--json"], capture_output=True, text=True,
                          check=True)
    theirs = json.loads(done.stdout)["asDrawn"]
    assert row["level"] == theirs["level"] and row["volume_drawn"] == theirs["volume"]
    assert row["compliance_drawn"] == pytest.approx(theirs["compliance"], rel=1e-9)


def test_the_scenes_have_refusals_that_are_fixed_and_one_that_is_not():
    rows, _ = in_python(FOLDER / "refusal-fixed.json", move_blob=False)
    assert [row.iteration for row in rows] == [1, 2, 3, 4, 10, 11, 12, 15, 16]
    rows, refusal = in_python(FOLDER / "refusal-final.json", move_blob=False)
    assert len(rows) == 5 and refusal.startswith("Change load")
