"""Studies: what is run, where, and what remains after every kind of interruption."""

import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

import numpy as np
import pytest
from conftest import PACKAGE

import voxam
from voxam import scenes, study
from voxam.study import _dataset, _drawn, _engines, _plan
from voxam.study._command import study_main

SCENE = {"grid": {"width": 12, "height": 8}, "subdivision": 2, "volumeFraction": 0.5,
         "iterations": 15, "loads": [{"x": 12, "y": 4, "fy": 1}],
         "supports": [{"x": 0, "y": [0, 8], "fix": "xy"}]}
VOLUMES = {"volumeFraction": [0.45, 0.5, 0.55, 0.6]}
UNEQUAL = ("seconds", "host", "library")  # between machines and runs


def table(results):
    return [{key: value for key, value in row.items() if key not in UNEQUAL}
            for row in results.rows()]


def small(folder, **options):
    return study.run(study.Study(SCENE, combine=VOLUMES), folder,
                     **{"processes": 1, "progress": False, **options})


def command(*arguments, **options):
    return subprocess.run([sys.executable, "-m", "voxam", *map(str, arguments)],
                          capture_output=True, text=True, timeout=300, **options)


def write(path, **members):
    path.write_text(json.dumps({"scene": SCENE, **members}))
    return path


def test_combines_lists_and_draws():
    plan = study.Study(SCENE, combine={"volumeFraction": [0.3, 0.4], "loads[0].x": [6, 12]},
                       entries=[{"penalty": 2}, {"loads": SCENE["loads"] * 2}],
                       draw=study.Draw({"loads[0].y": {"from": 0, "to": 8, "whole": True},
                                        "loads[0].fx": {"from": -1, "to": 1},
                                        "iterations": {"choose": [3, 5]}}, count=50, seed=7))
    runs = list(plan)
    assert len(runs) == len(plan) == 400
    assert [run.parameters["volumeFraction"] for run in runs] == [0.3] * 200 + [0.4] * 200
    assert len(runs[50].scene["loads"]) == 2 and "penalty" not in runs[50].scene
    drawn = [run.scene["loads"][0] for run in runs[:50]]
    assert {load["y"] for load in drawn} == set(range(9))
    assert {run.scene["iterations"] for run in runs} == {3, 5}
    assert all(-1 <= load["fx"] <= 1 for load in drawn)
    assert len({load["fx"] for load in drawn}) == 50
    longer = study.Draw(plan.draw.keys, count=60, seed=7)
    assert list(longer)[:50] == list(plan.draw) != list(study.Draw(plan.draw.keys, 50, seed=8))
    assert SCENE["loads"][0] == {"x": 12, "y": 4, "fy": 1}


@pytest.mark.parametrize("given, values", [
    ({"from": 1.1, "to": 1.3, "step": 0.1}, [1.1, 1.2, 1.3]),
    ({"from": 12, "to": 0, "step": -5}, [12, 7, 2]),
    ({"from": 0, "to": 1, "count": 3}, [0, 0.5, 1]),
    ({"from": 4, "to": 9, "count": 1}, [4]),
])
def test_ranges_of_values(given, values, tmp_path):
    plan = study.read_study(write(tmp_path / "a.json", combine={"penalty": given}))
    assert [run.parameters["penalty"] for run in plan] == values


@pytest.mark.parametrize("members, complaint", [
    ({}, "nothing varies: add combine, list or draw"),
    ({"combin": {}}, 'unknown key "combin"; did you mean "combine"?'),
    ({"combine": {"loads[1].x": [1]}}, "wrong.json: loads[1].x: loads has no entry 1: write 0"),
    ({"combine": {"load[0].x": [1]}}, 'load[0].x: the scene has no "load"'),
    ({"list": [{"penalty": 2}, {"grid.width.x": 3}]}, "grid.width.x: grid.width is no object"),
    ({"combine": {"loads[].x": [1]}}, '"loads[].x" is no path'),
    ({"combine": {"penalty": []}}, '"penalty" has no values'),
    ({"combine": {"penalty": {"from": 1, "to": 3}}}, "combine.penalty: add count or step"),
    ({"combine": {"penalty": {"from": 1, "to": 3, "step": -1}}}, "-1 does not lead from 1 to 3"),
    ({"combine": {"penalty": [2]}, "list": [{"penalty": 3}]}, '"penalty" is in two of'),
    ({"combine": {"refine": [1.5]}}, "refine: 1.5 is not a whole number"),
    ({"draw": {"count": 2, "keys": {"penalty": {"from": 3, "to": 1}}}}, "from 3 is above to 1"),
    ({"draw": {"count": 0, "keys": {"penalty": {"from": 1, "to": 2}}}}, "draw.count: 0 is outside"),
    ({"combine": VOLUMES, "keep": ["stress"]}, 'keep: unknown "stress"'),
    ({"combine": {"volumeFracton": [0.3]}}, 'wrong.json: no scene of the study can be run: run 1: '
     'unknown key "volumeFracton"; did you mean "volumeFr'),
    ({"combine": VOLUMES, "scene": "no.json"}, "no.json: No such file or directory\n"),
])
def test_wrong_studies_are_refused_before_a_run(members, complaint, tmp_path, capsys):
    assert study_main([str(write(tmp_path / "wrong.json", **members))]) == 2
    said = capsys.readouterr().err
    assert complaint in said and said.startswith("voxam: ") and said.count("\n") == 1
    assert [entry.name for entry in tmp_path.iterdir()] == ["wrong.json"]


def test_the_schema_accepts_the_examples_and_what_the_reader_does():
    jsonschema = pytest.importorskip("jsonschema")
    folder = PACKAGE / "examples" / "studies"
    validator = jsonschema.Draft202012Validator(
        json.loads((folder / "study.schema.json").read_text()))
    documents = [json.loads(file.read_text()) for file in folder.glob("*.json")
                 if "schema" not in file.name]
    documents.append({"scene": SCENE, "list": [{"loads[0].x": 3}], "keep": [], "draw": {
        "count": 2, "keys": {"penalty": {"choose": [1]}, "iterations": {
            "from": 1, "to": 3, "whole": True}}}})
    for document in documents:
        validator.validate(document)
    for wrong in ({"combin": {}}, {}, {"combine": {"penalty": []}},
                  {"combine": {"loads[].x": [1]}}, {"draw": {"count": 0, "keys": {}}},
                  {"combine": {"penalty": {"from": 1, "to": 3}}}):
        assert not validator.is_valid({"scene": SCENE, **wrong}), wrong


def test_a_refined_scene_has_everything_where_it_was():
    document = {**SCENE, "meshFactor": 2, "blob": [{"x": 2, "y": [0, 1]}],
                "loads": [{"x": [4, 6], "y": 0, "fy": 3}],
                "passive": {"void": [{"x": [0, 3], "y": 2}], "solid": [{"x": 8, "y": 3,
                                                                        "radius": [1, 2]}]},
                "timeline": [{"iteration": 3, "supports": [{"x": 0, "y": [2, 4], "fix": "y"}],
                              "passive": ["#..........o"] * 8}]}
    coarse, fine = (scenes.scene_of(_plan.refined(document, factor)) for factor in (1, 3))
    assert (fine.width, fine.height) == (36, 24)
    assert [(load.x, load.y) for load in fine.settings["loads"]] == [(x, 0) for x in range(12, 19)]
    assert sum(load.fy for load in fine.settings["loads"]) == pytest.approx(3)
    assert [node.y for node in fine.timeline[0].settings["supports"]] == list(range(6, 13))
    for one, other in (coarse.settings, fine.settings), (coarse.timeline[0].settings,
                                                         fine.timeline[0].settings):
        for name in {"void", "blob"} & set(one):
            assert (np.kron(one[name], np.ones((3, 3), bool)) == other[name]).all()
    area = [scene.settings["solid"].sum() for scene in (coarse, fine)]
    assert area[1] == pytest.approx(9 * area[0], rel=0.2)


def test_results_are_those_of_plain_runs_and_are_there_for_good(tmp_path):
    results = small(tmp_path)
    for run, volume in enumerate(VOLUMES["volumeFraction"], 1):
        scene = scenes.scene_of({**SCENE, "volumeFraction": volume})
        *_, (number, last) = scenes.run(scene)
        row = results.rows()[run - 1]
        assert (results.design(run) == 1 - last.picture).all()
        assert (row["status"], row["iterations"], row["volumeFraction"]) == ("done", 15, volume)
        assert row["compliance_optimising"] == last.compliance
        assert row["volume_drawn"] == pytest.approx(last.volume, abs=2 / 384)  # cells in pairs
    before = {file: file.stat().st_mtime_ns for file in (tmp_path / "runs").rglob("*.npz")}
    damaged, *others = before
    damaged.write_bytes(damaged.read_bytes()[:-40])
    assert table(small(tmp_path)) == table(results)
    assert all(file.stat().st_mtime_ns == before[file] for file in others)
    assert damaged.stat().st_mtime_ns != before[damaged] and len(before) == 4


def test_the_frame_and_the_tables_agree(tmp_path):
    pandas = pytest.importorskip("pandas")
    results = small(tmp_path)
    frame = results.frame()
    assert list(frame.index) == [1, 2, 3, 4]
    read = pandas.read_csv(tmp_path / "results.csv", index_col="run", float_precision="round_trip")
    for name in ("volumeFraction", "compliance_drawn", "change", "seconds"):
        assert (read[name] == frame[name]).all()
    index = json.loads((tmp_path / "index.json").read_text())
    assert set(index["columns"]) == {"run", *read.columns}
    assert index["made_with"][0]["voxam"] == voxam.__version__
    assert study.Study(**{("entries" if key == "list" else key): value
                          for key, value in index["study"].items()}).scene == SCENE


def test_values_of_numpy_and_values_that_no_scene_has(tmp_path):
    results = study.run(study.Study(SCENE, combine={"refine": [1, 1.5], "iterations": range(2, 4)},
                                    draw=study.Draw({"penalty": {"choose": np.arange(2.0, 4)}}, 1)),
                        tmp_path / "a", processes=1, progress=False)
    assert [(row["refine"], row["status"]) for row in results.rows()] == [
        (1, "done"), (1, "done"), (1.5, "failed"), (1.5, "failed")]
    assert "1.5 is not a whole number" in results.rows()[2]["reason"]
    pairs = [({"x": np.int64(3)}, {**SCENE, "iterations": np.int64(2)}),
             ({"x": np.float32(0.5)}, {**SCENE, "penalty": float("nan")})]
    rows = study.run(iter(pairs), tmp_path / "b", processes=1, progress=False).rows()
    assert [(row["x"], row["status"]) for row in rows] == [(3, "done"), (0.5, "failed")]
    for wrong in {"combine": {"penalty": 3}}, {"draw": {"penalty": 1}}, {"keep": "design"}:
        with pytest.raises(study.StudyError):
            study.Study(SCENE, **wrong)


def test_what_fails_is_a_row(tmp_path):
    pairs = [({"case": name}, {**SCENE, **change}) for name, change in [
        ("good", {}), ("free", {"supports": []}),
        ("outside", {"loads": [{"x": 13, "y": 0, "fy": 1}]}),
        ("no grid", {"grid": None}), ("again", {"title": "the same as good"})]]
    results = study.run(iter(pairs), tmp_path, processes=1, progress=False)
    rows = {row["case"]: row for row in results.rows()}
    assert [row["status"] for row in rows.values()] == ["done", *["failed"] * 3, "done"]
    assert "Hold it in x" in rows["free"]["reason"]
    assert "scene: loads[0].x: 13 is outside 0..12" == rows["outside"]["reason"]
    assert rows["good"]["key"] == rows["again"]["key"]
    with pytest.raises(KeyError, match="run 2 has no design: it failed"):
        results.design(2)


def test_a_thousand_runs_and_their_report(tmp_path):
    plan = study.Study({**SCENE, "iterations": 2, "title": "</script><b>"},
                       title="</title><script>alert(1)</script>", draw=study.Draw(
        {"volumeFraction": {"from": 0.3, "to": 0.6}}, count=1000))
    results = study.run(plan, tmp_path, processes=2, progress=False)
    rows = results.rows()
    assert [row["run"] for row in rows] == list(range(1, 1001))
    assert {row["status"] for row in rows} == {"done"} and len({row["key"] for row in rows}) == 1000
    page = (tmp_path / "report.html").read_text()
    assert len(page) < 4e6 and page.count("<script") == 2
    assert not re.search(r'(src|href)\s*=\s*["\'](?!data:)', page)
    data = json.loads(re.search(r'id="data">(.*)</script>', page).group(1))
    assert len(data["rows"]) == 1000 and len(data["pictures"]) == 400


def test_a_folder_that_cannot_be_made_and_a_name_that_is_taken(tmp_path, capsys):
    file = write(tmp_path / "a.json", combine=VOLUMES)
    assert study_main([str(file), "--output", str(file)]) == 2
    assert "a.json/runs: Not a directory. Results so far are kept. S" in capsys.readouterr().err
    with pytest.raises(study.StudyError, match='parameter "volume": the results have a column of'):
        study.run([({"volume": 0.5}, SCENE)], tmp_path / "b", processes=1, progress=False)


def deadly(task):
    """Instead of a run: ends its process for some tasks, and leaves a trace of each call."""
    scene = json.loads(task.scene)
    if scene["kind"] == "deadly":
        os._exit(1)
    if scene["kind"] == "once" and not pathlib.Path(scene["trace"]).exists():
        pathlib.Path(scene["trace"]).touch()
        os.kill(os.getpid(), signal.SIGKILL)
    return _engines.Outcome({"result": {"status": "done"}, "made": {}}, b"")


def test_processes_that_die_lose_no_run_but_their_own(tmp_path):
    kinds = ["fine"] * 3 + ["once", "deadly"] + ["fine"] * 10
    tasks = [_engines.Task(str(i), json.dumps({"kind": kind, "trace": str(tmp_path / "trace")}), ())
             for i, kind in enumerate(kinds)]
    engine = _engines.Processes(2, deadly)
    ended = {int(task.key): outcome.record["result"]
             for task, outcome in engine.run(iter(tasks), lambda: False)}
    assert sorted(ended) == list(range(15))
    assert [i for i, result in ended.items() if result["status"] == "failed"] == [4]
    assert ended[4]["cause"] == "machine" and "its process ended" in ended[4]["reason"]


def test_a_killed_command_goes_on_where_it_was(tmp_path):
    volumes = {"from": 0.45, "to": 0.6, "count": 40}
    # Long enough that the signals come in time where this process has to wait for a core.
    file = write(tmp_path / "a.json", scene={**SCENE, "iterations": 400},
                 combine={"volumeFraction": volumes})
    runs = tmp_path / "a.results" / "runs"
    for number in signal.SIGKILL, signal.SIGTERM:
        present = len(list(runs.rglob("*.npz")))
        process = subprocess.Popen([sys.executable, "-m", "voxam", "study", str(file)],
                                   stderr=subprocess.PIPE, text=True)
        while len(list(runs.rglob("[0-9a-f]*.npz"))) < present + 5 and process.poll() is None:
            time.sleep(0.01)
        process.send_signal(number)
        error = process.communicate(timeout=60)[1]  # ends only when the workers have ended as well
        assert process.returncode == (-number if number == signal.SIGKILL else 143), error
    present = set(runs.rglob("[0-9a-f]*.npz"))
    assert 10 <= len(present) < 40 and (tmp_path / "a.results" / "report.html").exists()
    times = {path: path.stat().st_mtime_ns for path in present}
    done = command("study", file)
    assert done.returncode == 0 and "40 of 40 done" in done.stdout and "[" not in done.stderr
    assert f"{40 - len(present)} runs made in" in done.stdout
    index = json.loads((tmp_path / "a.results" / "index.json").read_text())
    assert index["planned"] == index["made"] == 40
    assert all(path.stat().st_mtime_ns == time for path, time in times.items())
    whole = small(tmp_path / "whole.results", title="a")  # other scenes, so nothing is shared
    assert len(whole) == 4 and len(list(runs.rglob("[0-9a-f]*.npz"))) == 40


FULL_DISK = """
import resource, signal, sys
signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
resource.setrlimit(resource.RLIMIT_FSIZE, (int(sys.argv[2]),) * 2)
from voxam.study._command import study_main
sys.exit(study_main([sys.argv[1], "--processes", "1"]))
"""


def test_a_disk_that_is_full_ends_the_study_until_there_is_room(tmp_path):
    """A limit of the size of files stands in for the disk: each file fails in mid-writing."""
    file = write(tmp_path / "a.json", combine=VOLUMES)
    done = subprocess.run([sys.executable, "-c", FULL_DISK, str(file), "900"], capture_output=True,
                          text=True, timeout=120)
    assert done.returncode == 2 and "File too large. Results so far are kept" in done.stderr
    left = [path for path in (tmp_path / "a.results").rglob("*") if path.is_file()]
    assert all(path.stat().st_size < 900 and not path.name.startswith(".") for path in left)
    assert command("study", file).returncode == 0
    assert len(study.Results(tmp_path / "a.results").rows()) == 4


def test_the_command_tells_what_it_will_and_did_do(tmp_path):
    file = write(tmp_path / "a.json", combine={"loads[0].x": [6, 12, 13]})
    done = command("study", file, "--dry-run")
    assert done.stdout == "1: loads[0].x = 6\n2: loads[0].x = 12\n3: loads[0].x = 13\n3 runs\n"
    done = command("study", file, "--pictures")
    assert done.returncode == 1 and "3 runs made in" in done.stdout
    assert "3 of 3 done, 1 failed" in done.stdout
    assert "  run 3: scene: loads[0].x: 13 is outside 0..12" in done.stdout
    pictures = sorted((tmp_path / "a.results" / "pictures").iterdir())
    assert [path.name for path in pictures] == ["00001.png", "00002.png"]
    for name in "study", "dataset":
        assert all(len(line) <= 80 for line in command(name, "--help").stdout.splitlines())


def test_pictures_are_what_they_show(tmp_path):
    image = pytest.importorskip("matplotlib.image")
    results = small(tmp_path)
    results.save_picture(1, tmp_path / "a.png")
    shown = image.imread(tmp_path / "a.png")
    assert shown.shape == (16, 24) and np.abs(1 - shown - results.design(1)).max() < 1 / 255


def test_a_cluster_whose_worker_is_killed_gives_the_same_bytes(tmp_path):
    distributed = pytest.importorskip("distributed")
    plan = study.Study({**SCENE, "iterations": 60}, keep=("design", "displacements"),
                       combine={"volumeFraction": list(np.linspace(0.45, 0.6, 30))})
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None,
                                  processes=True) as cluster, distributed.Client(cluster) as client:
        calls = []

        def kill_once():
            calls.append(None)
            if len(calls) == 6:
                os.kill(next(iter(client.run(os.getpid).values())), signal.SIGKILL)
            return False

        there = study.run(plan, tmp_path / "there", client=client, stop=kill_once, progress=False)
    here = study.run(plan, tmp_path / "here", progress=False)
    assert len(calls) > 6 and table(there) == table(here) and len(table(here)) == 30
    for run in range(1, 31):
        for name in "design", "displacements":
            assert there.array(run, name).tobytes() == here.array(run, name).tobytes()


def test_the_notebook_runs(tmp_path, monkeypatch):
    nbformat, nbclient = pytest.importorskip("nbformat"), pytest.importorskip("nbclient")
    pytest.importorskip("ipykernel")
    monkeypatch.delenv("MPLBACKEND", raising=False)  # the notebook chooses its own
    notebook = nbformat.read(PACKAGE / "examples" / "study.ipynb", as_version=4)
    nbclient.NotebookClient(notebook, timeout=300, resources={"metadata": {"path": tmp_path}},
                            kernel_name="python3").execute()
    outputs = [output for cell in notebook.cells for output in cell.get("outputs", [])]
    assert sum("image/png" in output.get("data", {}) for output in outputs) == 2
    assert len(study.Results(tmp_path / "material-and-penalty.results").rows()) == 8


def test_the_level_keeps_the_volume_and_what_is_alike_together():
    random = np.random.default_rng(1)
    for material in [random.random((20, 30)), random.random((20, 30)) ** 4, np.ones((3, 4)),
                     np.zeros((3, 4)), (random.random((20, 30)) > 0.7) * 1.0]:
        level = _drawn.keeping_level(material.astype(np.float32))
        assert abs((material >= level).sum() - material.sum()) <= 1 and 0 < level < 1
    half = random.random((20, 15)).astype(np.float32)
    whole = np.hstack([half, half[:, ::-1] + np.float32(2e-7)])
    solid = whole >= _drawn.keeping_level(whole)
    assert (solid == solid[:, ::-1]).all() and abs(solid.sum() - whole.sum()) <= 2


def test_as_drawn_is_the_analysis_of_the_final_scene(tmp_path):
    """Loads and supports come from the reader of scenes here, on the refined grid."""
    document = {**SCENE, "iterations": 25, "meshFactor": 2, "loadCases": 2, "loadCasesInUse": [1],
                "loads": [{"x": 12, "y": 4, "fy": 1},
                          {"x": 12, "y": [3, 5], "fx": 2, "fy": -3, "loadCase": 1}],
                "passive": {"solid": [{"x": [10, 11], "y": [2, 5]}]},
                "timeline": [{"iteration": 4, "supports": [{"x": [0, 1], "y": 0, "fix": "xy"},
                                                           {"x": 0, "y": 8, "fix": "x"}]}]}
    results = study.run([document], tmp_path, processes=1, progress=False)
    row, = results.rows()
    fine = scenes.scene_of(_plan.refined(document, 4))
    with voxam.Analysis(48, 32, fine.settings["loads"], fine.timeline[0].settings["supports"],
                        2) as analysis:
        exact = analysis.solve((results.design(1) >= row["level"]) * 1.0)
    assert row["compliance_drawn"] == exact.compliances[1] != exact.compliances[0]
    assert row["loose"] == exact.loose.sum()


def make(folder, seed, processes):
    options = study.DatasetOptions(designs=6, seed=seed, width=12, height=8, subdivision=2,
                                   iterations=15)
    made = study.make_dataset(folder, options, processes=processes, progress=False)
    return {path.name: path for path in made.iterdir() if path.is_file()}


def test_a_data_set_is_what_it_says(tmp_path):
    files, same, other = (make(tmp_path / name, seed, processes) for name, seed, processes in [
        ("a", 1, 2), ("b", 1, 1), ("c", 2, 2)])
    assert {name: path.read_bytes() for name, path in files.items()} == {
        name: path.read_bytes() for name, path in same.items()}
    assert files["densities.npy"].read_bytes() != other["densities.npy"].read_bytes()
    with pytest.raises(study.StudyError, match="another data set .*seed 1.*: choose"):
        make(tmp_path / "a", 2, 1)
    assert all(len(line) <= 80 for line in files["README.md"].read_text().splitlines())
    fields = json.loads(files["dataset.json"].read_text())["fields"]
    arrays = {name: np.load(files[field["file"]]) for name, field in fields.items()}
    for name, field in fields.items():
        assert list(arrays[name].shape) == field["shape"] and arrays[name].dtype == field["dtype"]
        assert f"`{field['file']}`" in files["README.md"].read_text()
    moved = arrays["displacements"]
    for drawn, u in zip(arrays["drawn"], moved):
        padded = np.pad(drawn, 1)
        has_material = sum(padded[y:y + 17, x:x + 25] for y in (0, 1) for x in (0, 1)) > 0
        assert (np.isfinite(u).all(axis=-1) | ~has_material).all()
        assert np.isnan(u[~has_material]).all()
    work = (arrays["forces"] * moved[:, ::2, ::2]).sum(axis=-1)
    assert np.nansum(work, axis=(1, 2)) == pytest.approx(arrays["compliances"], rel=1e-5)
    assert not np.isnan(work[arrays["forces"].any(axis=-1)]).any()
    held = moved[:, ::2, ::2][arrays["supports"] == 1]
    assert (held[np.isfinite(held)] == 0).all()
    volumes = [arrays[name].mean(axis=(1, 2)) for name in ("drawn", "densities")]
    assert np.abs(volumes[0] - volumes[1]).max() < 0.02


def test_random_plates_are_held_and_loaded_away_from_their_supports():
    options = study.DatasetOptions(designs=1, width=20, height=9)
    for index in range(300):
        scene = scenes.scene_of(_dataset.random_scene(options, index))
        held = [(node.x, node.y) for node in scene.settings["supports"]]
        directions = {(node.x, node.y, way) for node in scene.settings["supports"]
                      for way in node.fix}
        motions = np.array([[way == "x", way == "y", -y if way == "x" else x]
                            for x, y, way in directions], float)
        assert np.linalg.matrix_rank(motions) == 3
        for load in scene.settings["loads"]:
            assert min(np.hypot(load.x - x, load.y - y) for x, y in held) >= 0.3 * 9
            assert 0.49 < np.hypot(load.fx, load.fy) < 1.01


ONE_THREAD = """
import os
from voxam import scenes
from voxam.study import _work
cores = os.sched_getaffinity(0)
_work.use_one_thread()
before = len(os.listdir("/proc/self/task"))
for _ in scenes.run(scenes.scene_of({"grid": {"width": 60, "height": 40}, "volumeFraction": 0.5,
                                     "loads": [{"x": 60, "y": 20, "fy": 1}], "iterations": 3,
                                     "supports": [{"x": 0, "y": [0, 40], "fix": "xy"}]})):
    pass
print(len(os.listdir("/proc/self/task")) - before, os.sched_getaffinity(0) == cores)
"""


def test_a_worker_keeps_the_library_to_one_thread_and_itself_to_no_core():
    done = subprocess.run([sys.executable, "-c", ONE_THREAD], capture_output=True, text=True)
    assert done.stdout.splitlines()[-1:] == ["0 True"], done.stderr
