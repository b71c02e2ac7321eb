"""The C# host gives the same bits for the calls that the Python package makes for a scene, and
refuses the same wrong calls with the same texts."""
import os
import pathlib
import subprocess

import numpy as np
import pytest

from voxam import Optimiser, ProblemError, Support, scenes

FOLDER = pathlib.Path(__file__).parent / "scenes"
REPLAY = os.environ.get("VOXAM_CSHARP_REPLAY", "")
FIX = {"x": 1, "y": 2, "xy": 3}

pytestmark = pytest.mark.skipif(not REPLAY, reason="needs Mono")


class Recorded(Optimiser):
    """Notes each call as a line for the replay, and what it came to."""

    lines, outcomes = [], []

    def __init__(self, width, height, *, volume_fraction=0.5, subdivision=1, mesh_factor=1,
                 load_cases=1):
        self.lines.append(f"create detail={width},{height},{subdivision},{mesh_factor},"
                          f"{load_cases} volume={volume_fraction!r}")
        super().__init__(width, height, volume_fraction=volume_fraction, subdivision=subdivision,
                         mesh_factor=mesh_factor, load_cases=load_cases)

    def update(self, loads, supports, **rest):
        self._note("update", loads=loads, supports=supports, **rest)
        super().update(loads, supports, **rest)

    def restart_with(self, problem, *, keep_design=False, subdivision=None, mesh_factor=None):
        detail = f"{int(keep_design)},{subdivision or 0},{mesh_factor or 0}"
        self._note(f"restart detail={detail}", **problem)
        super().restart_with(problem, keep_design=keep_design, subdivision=subdivision,
                             mesh_factor=mesh_factor)

    def iterate(self, penalty=3.0, *, move_blob=False):
        self.lines.append(f"iterate penalty={penalty!r} moves={int(move_blob)}")
        try:
            result = super().iterate(penalty, move_blob=move_blob)
        except ProblemError as error:
            self.outcomes.append(f"refused {error}")
            raise
        bits = [f"{np.float64(number).view(np.uint64):x}"
                for number in (result.compliance, result.change)]
        self.outcomes.append((" ".join(bits), result.picture.tobytes()))
        return result

    def _note(self, call, *, loads, supports, volume_fraction=None, void=None, solid=None,
              second_solid=None, load_cases_in_use=None, blob=None):
        cases = range(self._plate.load_cases) if load_cases_in_use is None else load_cases_in_use
        masks = {"void": void, "solid": solid, "second": second_solid, "blob": blob}
        forces = [(load.x, load.y, load.fx, load.fy, load.load_case) for load in loads]
        held = [(support.x, support.y, FIX[support.fix]) for support in supports]
        volume = self.volume_fraction if volume_fraction is None else volume_fraction
        fields = [f"{name}={','.join(repr(n) for item in items for n in item)}"
                  for name, items in (("loads", forces), ("supports", held))]
        fields += [f"volume={volume!r}", f"cases={','.join(map(str, cases))}"]
        fields += [f"{name}={'' if mask is None else ''.join('01'[int(m)] for m in np.ravel(mask))}"
                   for name, mask in masks.items()]
        self.lines.append(" ".join([call, *fields]))


@pytest.fixture(autouse=True)
def recorded(monkeypatch):
    monkeypatch.setattr(Recorded, "lines", [])
    monkeypatch.setattr(Recorded, "outcomes", [])
    monkeypatch.setattr(scenes, "Optimiser", Recorded)


def replayed(folder):
    """What the calls come to in C#: as in Recorded.outcomes, and the number of wrong calls."""
    calls, pictures = folder / "calls", folder / "pictures"
    calls.write_text("\n".join(Recorded.lines))
    done = subprocess.run(["mono", REPLAY, calls, pictures], capture_output=True, text=True,
                          check=True)
    lines = [line for line in done.stdout.splitlines() if not line.startswith("VoxamApp")]
    data, at, outcomes = pictures.read_bytes(), 0, []
    expected = [each for each in Recorded.outcomes if isinstance(each, tuple)]
    for line in lines:
        if not line.startswith(("refused ", "wrong ")):
            size = len(expected.pop(0)[1])
            outcomes.append((line, data[at:at + size]))
            at += size
        elif line.startswith("refused "):
            outcomes.append(line)
    assert at == len(data)
    return outcomes, sum(line.startswith("wrong ") for line in lines)


@pytest.mark.parametrize("file", sorted(FOLDER.glob("*.json")), ids=lambda file: file.stem)
def test_the_same_calls_give_the_same_bits(file, tmp_path):
    scene = scenes.read_scene(file)
    try:
        for _ in scenes.run(scene, move_blob=scene.has_blob):
            pass
    except ProblemError:
        pass
    assert len(Recorded.outcomes) >= 4
    assert replayed(tmp_path) == (Recorded.outcomes, 0)


def test_the_same_calls_are_wrong(tmp_path):
    problem = {"loads": [scenes.Load(4, 1, 0.0, 1.0)], "supports": [Support(0, y) for y in range(4)]}
    mask = np.zeros((3, 4), bool)
    mask[1, 1] = True
    plates = (((2, 1), "update", {"void": mask}), ((2, 1), "update", {"blob": mask}),
              ((2, 2), "restart", {"solid": mask}), ((1, 1), "update", {"void": mask, "solid": mask}),
              ((1, 1), "update", {"load_cases_in_use": [1]}))
    wrong = 0
    for (subdivision, mesh_factor), call, masks in plates:
        with Recorded(4, 3, subdivision=subdivision, mesh_factor=mesh_factor) as optimiser:
            try:
                optimiser.update(**problem, **masks)
                if call == "restart":
                    optimiser.restart_with({**problem, **masks}, mesh_factor=1)
            except ValueError:
                wrong += 1
    assert wrong == len(plates)
    assert replayed(tmp_path) == (Recorded.outcomes, wrong)
