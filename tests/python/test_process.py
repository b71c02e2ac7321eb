"""What takes a process of its own: finding the library, want of memory, forks, the program."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

import numpy as np
import pytest
from conftest import PACKAGE, SCENES

import voxam

LIBRARY = pathlib.Path(os.environ["VOXAM_LIBRARY"])
CREATE = "import voxam; voxam.Optimiser(3, 2).close()"


def python(*arguments, cwd=None, **environment):
    variables = {**os.environ, **environment}
    return subprocess.run([sys.executable, *arguments], capture_output=True, text=True, cwd=cwd,
                          timeout=120, env={k: v for k, v in variables.items() if v is not None})


@pytest.mark.parametrize("place", ["package", "package/voxam", "installed"])
def test_finds_the_library_beside_the_package_or_installed(place, tmp_path):
    shutil.copytree(PACKAGE / "src" / "voxam", tmp_path / "package" / "voxam")
    folder = tmp_path / place
    folder.mkdir(exist_ok=True)
    (folder / "libvoxam.so").symlink_to(LIBRARY)
    path = str(folder) if place == "installed" else None
    done = python("-c", CREATE, VOXAM_LIBRARY=None, PYTHONPATH=str(tmp_path / "package"),
                  LD_LIBRARY_PATH=path)
    assert (done.returncode, done.stderr) == (0, "")


@pytest.mark.parametrize("library, reason", [
    ("/nowhere/libvoxam.so", "cannot open shared object file"),
    ("libm.so.6", "undefined symbol: _InitVoxamApp"),
])
def test_tells_why_the_library_cannot_be_loaded(library, reason):
    done = python("-c", CREATE, VOXAM_LIBRARY=library)
    assert done.returncode == 1
    assert "LibraryNotFoundError" in done.stderr and "VOXAM_LIBRARY" in done.stderr
    assert f"{library}: " in done.stderr and reason in done.stderr


WITHOUT_MEMORY = """
import resource, voxam, voxam._plate
voxam._plate.Plate.check_memory = lambda *_: None  # as if the estimate were too low
wall = [voxam.Support(0, y) for y in range(401)]
load = [voxam.Load(400, 200, fy=1)]
voxam.Optimiser(2, 2).close()
resource.setrlimit(resource.RLIMIT_AS, (1 << 30, 1 << 30))
for make in (lambda: voxam.Optimiser(400, 400, mesh_factor=16),
             lambda: voxam.Optimiser(400, 400, mesh_factor=10),
             lambda: voxam.Game(400, 400, load, wall, load_cases=3000)):
    try:
        with make() as solver:
            solver.update(load, wall)
            solver.iterate()
    except MemoryError as error:
        print(type(error).__name__, error)
with voxam.Optimiser(4, 4) as optimiser:
    optimiser.update([voxam.Load(4, 2, fy=1)], wall[:5])
    print(optimiser.iterate().compliance > 0)
"""


def test_want_of_memory_is_an_error_of_its_own():
    lines = python("-c", WITHOUT_MEMORY).stdout.splitlines()
    refusals = [line for line in lines if line.startswith("OutOfMemoryError not enough memory")]
    assert len(refusals) == 3 and lines[-1] == "True", lines


FORK = """
import multiprocessing, voxam
def create(_):
    try:
        voxam.Optimiser(3, 2)
    except voxam.VoxamError as error:
        return str(error)
if __name__ == "__main__":
    context = multiprocessing.get_context("{method}")
    voxam.Optimiser(3, 2).close()
    print(context.Pool(1).map(create, [0]))
"""


FORKED_WHILE_CALLED = """
import os, sys, threading, voxam
optimiser = voxam.Optimiser(60, 40)
optimiser.update([voxam.Load(60, 20, fy=1)], [voxam.Support(0, y) for y in range(41)])
calls = threading.Semaphore(0)
def work():
    while True:
        calls.release()
        optimiser.iterate()
threading.Thread(target=work, daemon=True).start()
for _ in range(5):
    calls.acquire()
    child = os.fork()
    if child == 0:
        sys.exit(7)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 7
os._exit(0)
"""


def test_a_child_that_is_forked_during_an_iteration_ends():
    assert python("-c", FORKED_WHILE_CALLED).returncode == 0


def test_memory_is_what_a_container_leaves(tmp_path, monkeypatch):
    from voxam import _memory
    monkeypatch.setattr(_memory, "_PROC", tmp_path)
    monkeypatch.setattr(_memory, "_CGROUP", tmp_path / "cgroup")
    files = {"meminfo": "MemAvailable: 2000000 kB", "self/cgroup": "0::/host/group",
             "cgroup/memory.max": "400000000", "cgroup/memory.current": "300000000",
             "cgroup/memory.stat": "anon 5\ninactive_file 50000000"}
    for name, text in files.items():
        (tmp_path / name).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / name).write_text(text)
    assert _memory.available_memory() == 150e6
    (tmp_path / "cgroup/memory.max").write_text("max")
    assert _memory.available_memory() == 2000000 * 1024


@pytest.mark.parametrize("method, answer", [("fork", "this process was forked"), ("spawn", "None")])
def test_processes_for_parallel_work_are_spawned(method, answer, tmp_path):
    program = tmp_path / "host.py"
    program.write_text(FORK.replace("{method}", method))
    assert answer in python(str(program)).stdout


def test_the_program_saves_pictures_and_animations(tmp_path):
    scene = str(SCENES / "optimise-cantilever.json")
    for name, start in ("a.png", b"\x89PNG"), ("a.gif", b"GIF89a"):
        file = tmp_path / name
        done = python("-m", "voxam", scene, "--iterations", "3", "--save", str(file))
        assert (done.returncode, done.stderr) == (0, "")
        assert f"{file}: iteration 3, compliance" in done.stdout
        assert file.read_bytes().startswith(start)


def test_the_program_saves_what_formed_before_a_problem(tmp_path):
    scene = tmp_path / "scene.json"
    scene.write_text('{"grid": {"width": 8, "height": 4}, "volumeFraction": 0.5, "iterations": 9,'
                     '"loads": [{"x": 8, "y": 2, "fy": 1}],'
                     '"supports": [{"x": 0, "y": [0, 4], "fix": "xy"}],'
                     '"timeline": [{"iteration": 4, "supports": []}]}')
    file = tmp_path / "forming.gif"
    done = python("-m", "voxam", str(scene), "--save", str(file))
    assert done.returncode == 1 and "Hold it in x" in done.stderr
    assert f"{file}: iteration 3, compliance" in done.stdout
    assert file.read_bytes().startswith(b"GIF89a")


def test_the_program_tells_errors_in_one_line(tmp_path):
    free = tmp_path / "free.json"
    free.write_text('{"grid": {"width": 4, "height": 4}, "volumeFraction": 0.5, "supports": [],'
                    '"loads": [{"x": 1, "y": 1, "fy": 1}]}')
    for arguments, status, complaint in [
        ([str(tmp_path / "no.json")], 2, "No such file"),
        ([str(SCENES / "arch.json")], 2,
         'arch.json: "volumeFraction" is missing: the scene is one to be scored'),
        ([str(free)], 1, "no display"),
        ([str(free), "--save", str(tmp_path / "a.png")], 1, "Hold it in x"),
        ([str(free), "--save", str(tmp_path / "a.gif")], 1, "Hold it in x"),
        ([str(free), "--save", str(tmp_path / "a.jpeg2")], 2, "a.jpeg2: the ending has to be"),
        ([str(free), "--save", str(tmp_path / "no" / "a.gif")], 2, "a.gif: there is no folder"),
        ([str(free), "--blob", "--save", "a.png"], 2, "free.json: blob: no elements"),
        ([str(free), "--iterations", "0", "--save", "a.png"], 2, "--iterations"),
    ]:
        done = python("-m", "voxam", *arguments)
        assert done.returncode == status, done.stderr
        assert complaint in done.stderr and done.stderr.count("\n") == 1
    assert list(tmp_path.iterdir()) == [free]


def test_the_example_without_display_tells_where_the_picture_is(tmp_path):
    done = python(str(PACKAGE / "examples" / "cantilever.py"), cwd=tmp_path)
    assert (done.returncode, done.stderr) == (0, "")
    assert "the picture is in cantilever.png" in done.stdout
    assert (tmp_path / "cantilever.png").read_bytes().startswith(b"\x89PNG")


def test_the_package_installs(tmp_path):
    shutil.copytree(PACKAGE, tmp_path / "source",
                    ignore=shutil.ignore_patterns("build", "*.egg-info"))
    def install(setting):
        return python("-m", "pip", "install", "--no-index", "--no-deps", "--no-build-isolation",
                      "--config-settings", f"library={setting}", "--target",
                      str(tmp_path / "site"), str(tmp_path / "source"), PWD=str(LIBRARY.parent))

    for wrong in "missing.so", __file__:
        assert "this library cannot be used" in install(wrong).stderr
    done = install(LIBRARY.name)
    assert done.returncode == 0, done.stderr
    assert (tmp_path / "site" / "voxam" / "py.typed").is_file()
    assert (tmp_path / "site" / "voxam" / "libvoxam.so.1").read_bytes() == LIBRARY.read_bytes()
    metadata, = (tmp_path / "site").glob("voxam-*.dist-info/METADATA")
    header = (PACKAGE.parents[1] / "SparseMatrixLib" / "voxam.h").read_text()
    version = re.search(r'VOXAM_VERSION "(.*)"', header).group(1)
    assert f"Version: {version}\n" in metadata.read_text()
    done = python("-c", CREATE + "; print(voxam.__file__, voxam.__version__)",
                  PYTHONPATH=str(tmp_path / "site"))
    assert str(tmp_path / "site") in done.stdout and version in done.stdout


def test_designs_go_between_the_package_and_the_program(tmp_path):
    file = tmp_path / "design.csv"
    command = [os.environ["VOXAM_PROGRAM"], "optimise", str(SCENES / "optimise-cantilever.json"),
               "--iterations", "3", "--design", str(file)]
    subprocess.run(command, check=True, capture_output=True)
    scene = voxam.scenes.read_scene(SCENES / "optimise-cantilever.json")
    *_, (_, last) = voxam.scenes.run(scene, 3)
    design = voxam.designs.read_design(file, scene.width, scene.height)
    assert np.array_equal(design, last.densities)
    voxam.designs.write_design(tmp_path / "again.csv", design)
    again = voxam.designs.read_design(tmp_path / "again.csv", scene.width, scene.height)
    assert np.array_equal(again, design)
    for text, complaint in ("1,0\n1,x", "x"), ("1,0\n1", "columns"), ("1,2\n1,1", r"\[0, 1\]: 2"):
        file.write_text(text)
        with pytest.raises(ValueError, match=f"design.csv: .*{complaint}"):
            voxam.designs.read_design(file, 2, 2)
    file.write_text("1,0,1\n1,0,1")
    with pytest.raises(ValueError, match="design.csv: 3 x 2 densities do not fit"):
        voxam.designs.read_design(file, 2, 2)


@pytest.mark.parametrize("name, load_cases", [
    ("arch", None), ("bridge", None), ("hole", None), ("minimal", None),
    ("bridge", [{"weight": 3}, {"name": "right half", "weight": 0.2}])])
def test_scored_scenes_have_the_scores_of_the_program(name, load_cases, tmp_path):
    file = SCENES / f"{name}.json"
    if load_cases:
        document = {**json.loads(file.read_text()), "loadCases": load_cases}
        file = tmp_path / "weighted.json"
        file.write_text(json.dumps(document))
    scene = voxam.scenes.read_scored(file)
    with voxam.Analysis(scene.width, scene.height, scene.loads, scene.supports,
                        load_cases=scene.load_cases) as analysis:
        response = analysis.solve(scene.densities)
    done = subprocess.run([os.environ["VOXAM_PROGRAM"], "score", "--json", str(file)],
                          check=True, capture_output=True)
    assert scene.total(response.compliances) == pytest.approx(
        json.loads(done.stdout)["compliance"], rel=1e-12)


def test_wrong_densities_name_their_place(tmp_path):
    scene = json.loads((SCENES / "minimal.json").read_text())
    file = tmp_path / "scene.json"
    (tmp_path / "x.png").write_bytes(b"no picture")
    for densities, complaint in [(2, "densities: 2 is outside 0..1"),
                                 (["#"], "densities: 1 x 1 densities for 12 x 6 elements"),
                                 (["#", "##"], "densities: rows of one length"),
                                 ([[1, "a"]], r"densities\[0\]\[1\]: a number is needed"),
                                 (["#x"], r"densities\[0\]: characters"),
                                 ({"png": "x.png"}, "densities: .*x.png: is no PNG file"),
                                 ({"svg": "x"}, 'densities: unknown key "svg"')]:
        file.write_text(json.dumps({**scene, "densities": densities}))
        with pytest.raises(voxam.scenes.SceneError, match=f"scene.json: {complaint}"):
            voxam.scenes.read_scored(file)


def test_the_host_of_the_documentation_runs():
    text = (PACKAGE.parents[1] / "docs" / "languages.md").read_text()
    block = text.partition("\n## Python\n")[2].partition("```python\n")[2].partition("```")[0]
    done = python("-c", "import numpy, voxam\n" + block + "print(score.energies.shape)")
    assert done.stderr == "" and "(40, 60)" in done.stdout
