"""The optimiser, against the real library."""

import copy
import gc
import pickle
import re
import threading
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest
from conftest import ROOT, cantilever, mask, wall

import voxam


def middles_of_elements(picture):
    """Of an optimiser of 12 x 8 elements at (2, 2)."""
    return picture.reshape(8, 4, 12, 4)[:, 1:3, :, 1:3].mean(axis=(1, 3))


def test_masks_and_picture_are_indexed_y_x(plate):
    void, solid, second = mask(12, 8, (2, 1), (3, 1)), mask(12, 8, (9, 0)), mask(12, 8, (5, 6))
    plate.update(*cantilever(12, 8), void=void, solid=solid, second_solid=second)
    for _ in range(15):
        result = plate.iterate()
    assert result.picture.shape == plate.picture_shape == (32, 48)
    middles = middles_of_elements(result.picture)
    assert np.all(middles[void] > 0.98)
    assert np.all(middles[solid | second] < 0.02)


def test_writes_into_the_array_of_the_caller_and_nowhere_else(plate):
    rows, columns = plate.picture_shape
    frame = np.full((rows + 2, columns), 77, np.float32)
    result = plate.iterate(out=frame[1:-1])
    assert result.picture.base is frame
    assert np.all(frame[[0, -1]] == 77) and np.all(frame[1:-1] <= 1.001)
    plate.update([], wall(8))
    frame[:] = 77
    with pytest.raises(voxam.ProblemError):
        plate.iterate(out=frame[1:-1])
    assert np.all(frame == 77)


@pytest.mark.parametrize("out, error", [
    (np.empty((32, 47), np.float32), ValueError),
    (np.empty((48, 32), np.float32), ValueError),
    (np.empty((32, 48)), TypeError),
    (np.empty((48, 32), np.float32).T, ValueError),
    (np.empty((32, 96), np.float32)[:, ::2], ValueError),
    (np.frombuffer(bytes(32 * 48 * 4), np.float32).reshape(32, 48), ValueError),  # not writeable
    ([[0.0] * 48] * 32, TypeError),
    (np.frombuffer(bytearray(6145), np.float32, 1536, offset=1).reshape(32, 48), ValueError),
])
def test_refuses_arrays_that_the_picture_does_not_fit(plate, out, error):
    with pytest.raises(error, match="^out: "):
        plate.iterate(out=out)


def test_texts_say_what_to_do_until_an_update_mends_it(plate):
    loads, supports = cantilever(12, 8)
    before = plate.iterate().compliance
    for problem, text, cure in [
        (([voxam.Load(0, 4, 1, 1)], supports), "Load cannot be on top of support", "not held"),
        (([], supports), "Load cannot be on top of support", "Put a force"),
        ((loads, supports[:1]), "Change load", "Hold it"),
        (([voxam.Load(12, 4, 1e9)], supports), "Change load/support", "use smaller forces"),
    ]:
        plate.update(*problem)
        for _ in range(2):
            with pytest.raises(voxam.ProblemError, match=cure) as error:
                plate.iterate()
            assert error.value.text.startswith(text)
            travelled = pickle.loads(pickle.dumps(error.value))  # from process to process
            assert (travelled.text, str(travelled)) == (error.value.text, str(error.value))
    plate.update(loads, supports)
    assert 0 < plate.iterate().compliance < 1.5 * before


def test_load_cases_in_use():
    loads = [voxam.Load(12, 0, 0, 1, 0), voxam.Load(12, 8, 1, 0, 1)]
    compliances = []
    for cases in [0], [1], None, [1, 0, 1]:
        with voxam.Optimiser(12, 8, load_cases=2) as optimiser:
            optimiser.update(loads, wall(8), load_cases_in_use=cases)
            compliances.append(optimiser.iterate().compliance)
    assert compliances[2:] == pytest.approx([compliances[0] + compliances[1]] * 2, rel=1e-9)
    with voxam.Optimiser(2, 2, load_cases=200) as optimiser:
        with pytest.raises(ValueError, match="the first 128"):
            optimiser.update([voxam.Load(2, 0, 1)], wall(2))
        optimiser.update([voxam.Load(2, 0, 1, 0, 127)], wall(2), load_cases_in_use=[127])
        assert optimiser.iterate().compliance > 0


def test_blob_moves_is_tracked_and_stays(plate):
    start = mask(12, 8, *((x, y) for x in range(4, 7) for y in range(1, 4)))
    assert plate.blob is None
    plate.update(*cantilever(12, 8), blob=start)
    assert np.array_equal(plate.blob, start)
    for _ in range(10):
        result = plate.iterate(move_blob=True)
        assert np.count_nonzero(result.blob) == 9
        assert np.array_equal(plate.blob, result.blob)
    assert not np.array_equal(plate.blob, start)
    moved = plate.blob
    plate.update(*cantilever(12, 8), blob=plate.blob)
    holes = middles_of_elements(plate.iterate().picture) > 0.98
    assert np.all(holes[moved]) and not np.all(holes[start])
    assert np.array_equal(plate.blob, moved)


def test_refuses_wrong_penalties(plate):
    for wrong in 0, -1, float("nan"), "three":
        with pytest.raises((ValueError, TypeError), match="^penalty: "):
            plate.iterate(wrong)
    with pytest.raises(TypeError, match=r"^penalty: an array of shape \(32, 48\).*out=array"):
        plate.iterate(np.empty(plate.picture_shape, np.float32))


def test_restart_keeps_or_forgets_the_design(plate):
    first = [plate.iterate().compliance for _ in range(10)]
    plate.restart(keep_design=True)
    assert plate.iterate().compliance < 0.7 * first[0]
    assert plate.picture_shape == (32, 48)
    plate.restart(subdivision=1, mesh_factor=3)
    assert plate.iterate().picture.shape == plate.picture_shape == (24, 36)
    plate.restart(subdivision=2, mesh_factor=2)
    assert [plate.iterate().compliance for _ in range(10)] == first
    with pytest.raises(TypeError, match="keep_design: 'no' is neither"):
        plate.restart(keep_design="no")
    with pytest.raises(ValueError, match="keeps its subdivision"):
        plate.restart(keep_design=True, mesh_factor=1)
    assert plate.picture_shape == (32, 48)


def test_volume_fraction_stays_until_it_is_named(plate):
    plate.update(*cantilever(12, 8), volume_fraction=0.3)
    plate.update(*cantilever(12, 8))
    results = [plate.iterate() for _ in range(15)]
    assert plate.volume_fraction == pytest.approx(0.3) and results[-1].volume < 0.4


@pytest.mark.parametrize("settings, complaint", [
    ({"loads": [(13, 0, 1, 0)]}, r"loads\[0\].x: 13 is outside 0..12"),
    ({"loads": [(0, 0), (0, -1, 1, 0)]}, r"loads\[1\].y: -1 is outside 0..8"),
    ({"loads": [(0.5, 0, 1, 0)]}, r"loads\[0\].x: 0.5 is not a whole number"),
    ({"loads": [(0, 0, float("nan"))]}, r"loads\[0\].fx: nan is not a finite number"),
    ({"loads": [(0, 0, 0, 1e39)]}, r"loads\[0\].fy: 1e\+39 is not a finite number"),
    ({"loads": [(0, 0, 0, 1, 1)]}, r"loads\[0\].load_case: 1 is outside 0..0"),
    ({"loads": [(0, 0, "1")]}, r"loads\[0\].fx: '1' is not a number"),
    ({"loads": [(1,)]}, r"loads\[0\]: \(1,\) is no voxam.Load\(x, y, fx, fy, load_case\)"),
    ({"loads": [{"x": 1, "y": 0}]}, r"loads\[0\]: \{'x': 1, 'y': 0\} is no voxam.Load"),
    ({"loads": [voxam.Support(1, 1)]}, r"loads\[0\]: Support\(.*\) is no voxam.Load"),
    ({"loads": voxam.Load(1, 2, fy=1)}, r"loads: Load\(.*\) is no list; pass one, such as"),
    ({"loads": (12, 4, 0, 1)}, r"loads\[0\]: 12 is no voxam.Load"),
    ({"loads": None}, "loads: None is no list"),
    ({"supports": [(0, 9)]}, r"supports\[0\].y: 9 is outside 0..8"),
    ({"supports": [(0, 8, "yx")]}, r"supports\[0\].fix: 'yx'"),
    ({"supports": [(0, 8, np.ones(9))]}, r"supports\[0\].fix: an array of shape \(9,\) is not"),
    ({"volume_fraction": 1e-50}, "volume_fraction: 1e-50 is not above 0 .* .in single precision"),
    ({"volume_fraction": 1.01}, "volume_fraction: 1.01 is not above 0"),
    ({"void": np.zeros((12, 8), bool)},
     r"void: shape \(12, 8\) is not \(height, width\) = \(8, 12\)"),
    ({"solid": np.zeros((8, 12))}, "solid: a mask of bool"),
    ({"blob": np.ma.array(np.ones((8, 12), bool), mask=np.eye(8, 12))}, "blob: some entries"),
    ({"void": mask(12, 8, (3, 2)), "second_solid": mask(12, 8, (3, 2))},
     r"element \[2, 3\] is in both void and second_solid"),
    ({"load_cases_in_use": [0, 1]}, r"load_cases_in_use\[1\]: 1 is outside 0..0"),
    ({"load_cases_in_use": []}, "load_cases_in_use: at least one"),
    ({"load_cases_in_use": 0}, "load_cases_in_use: 0 is no list"),
])
def test_refuses_wrong_settings_and_keeps_the_old_ones(plate, settings, complaint):
    loads, supports = cantilever(12, 8)
    with pytest.raises((ValueError, TypeError), match=complaint):
        plate.update(**{"loads": loads, "supports": supports, **settings})
    assert plate.iterate().compliance > 0


@pytest.mark.parametrize("sizes, complaint", [
    ({"width": 0}, "width: 0 is outside"),
    ({"width": 3.5}, "width: 3.5 is not a whole number"),
    ({"volume_fraction": 10**400}, "volume_fraction: 10*\\.\\.\\.0* is not a finite number"),
    ({"volume_fraction": float("nan")}, "volume_fraction: nan"),
    ({"subdivision": 0}, "subdivision: 0 is outside"),
    ({"width": 100000, "height": 100000}, "more than the library can number"),
    ({"load_cases": 2**30}, "more than the library can number"),
    ({"subdivision": 2**8, "mesh_factor": 2**8}, "more cells than the library can number"),
])
def test_refuses_wrong_sizes(sizes, complaint):
    is_too_large = "the library" in complaint
    error = voxam.OutOfMemoryError if is_too_large else (ValueError, TypeError)
    with pytest.raises(error, match=complaint):
        voxam.Optimiser(**{"width": 4, "height": 3, **sizes})
    voxam.Optimiser(4, 3).close()  # nothing is left behind


def test_estimates_memory_as_documented():
    rows = re.findall(r"^\| (\d+) x (\d+) \| \((\d+), (\d+)\) \| (\d+) MB \| (\d+) MB \|$",
                      (ROOT / "docs" / "hosting.md").read_text(), re.MULTILINE)
    assert len(rows) > 4
    for row in rows:
        width, height, *refinement, optimiser, game = map(int, row)
        plate = voxam._plate.Plate.checked(width, height, 1)
        assert round(plate.optimiser_memory(*refinement) / 1e6) == optimiser
        assert round(plate.game_memory() / 1e6) == game


def test_what_the_machine_cannot_hold_is_refused_at_once(monkeypatch):
    monkeypatch.setattr("voxam._plate.available_memory", lambda: 2e8)
    for sizes in (300, 300, {}), (50, 50, {"mesh_factor": 64}), (50, 50, {"load_cases": 3000}):
        with pytest.raises(voxam.OutOfMemoryError, match="GB, and 0.2 GB are free: lower one"):
            voxam.Optimiser(*sizes[:2], **sizes[2])
    with pytest.raises(voxam.OutOfMemoryError, match="400 x 400 elements"):
        voxam.Game(400, 400, *cantilever(400, 400))
    with voxam.Optimiser(50, 50) as optimiser:
        optimiser.update(*cantilever(50, 50))
        with pytest.raises(MemoryError):
            optimiser.restart(mesh_factor=64)
        assert optimiser.iterate().picture.shape == (50, 50)
        monkeypatch.setattr("voxam._plate.available_memory", lambda: 0)
        optimiser.restart()  # in the place of the one before
    monkeypatch.undo()
    assert 1e6 < voxam._plate.available_memory()


def test_masks_that_would_be_misplaced_or_too_long_are_refused(plate):
    cells = mask(12, 8, (1, 1))
    plate.update(*cantilever(12, 8), blob=cells)
    with pytest.raises(ValueError, match="must be equal"):
        plate.restart(mesh_factor=1)
    plate.restart(subdivision=1, mesh_factor=1)
    plate.update(*cantilever(12, 8))
    plate.restart(mesh_factor=2)
    with pytest.raises(ValueError, match="must be equal"):
        plate.update(*cantilever(12, 8), void=cells)
    plate.close()
    for width, height, cells, complaint in [
        (200, 170, np.ones((170, 200), bool), "solid: 34000 elements, the most are 32767"),
        (40000, 1, mask(40000, 1, (39000, 0)), r"solid\[0, 39000\]: 32767 is the largest"),
    ]:
        with voxam.Optimiser(width, height) as large:
            with pytest.raises(ValueError, match=complaint):
                large.update(*cantilever(width, height), solid=cells)


def test_a_newer_optimiser_takes_the_place_of_an_older_one(plate):
    with pytest.raises(ValueError, match="width"):
        voxam.Optimiser(0, 2)
    assert plate.iterate().compliance > 0
    older, plate = plate, voxam.Optimiser(12, 8)
    with pytest.raises(voxam.VoxamError, match="this Optimiser was replaced by a newer one"):
        older.iterate()
    older.close()
    plate.update(*cantilever(12, 8))
    assert plate.iterate().compliance > 0
    with voxam.Game(3, 2, *cantilever(3, 2)) as game:  # one of each kind
        assert game.solve(np.ones((2, 3))).compliance > 0
    plate.close()
    plate.close()
    assert plate.closed
    with voxam.Optimiser(3, 2) as other:
        plate.close()
        other.update(*cantilever(3, 2))
        assert other.iterate().compliance > 0
        for use in (plate.iterate, plate.restart, lambda: plate.update(None, None),
                    lambda: plate.blob, plate.__enter__):
            with pytest.raises(voxam.VoxamError, match="this Optimiser is closed"):
                use()


def test_cannot_be_copied_or_created_again(plate):
    for copy_it in copy.copy, copy.deepcopy, pickle.dumps:
        with pytest.raises(TypeError, match="this Optimiser cannot be copied"):
            copy_it(plate)
    for closed in False, True:
        with pytest.raises(voxam.VoxamError, match="was created before"):
            plate.__init__(5, 5)
        assert (plate.width, plate.picture_shape) == (12, (32, 48))
        assert closed or plate.iterate().picture.shape == (32, 48)
        plate.close()


def test_a_derived_class_is_told_to_create_it():
    class Mine(voxam.Optimiser):
        def __init__(self):
            pass

    mine = Mine()
    for use in mine.iterate, mine.restart, lambda: mine.update([], []), mine.__enter__:
        with pytest.raises(voxam.VoxamError, match=r"has to call super\(\).__init__"):
            use()
    assert mine.closed
    mine.close()


def test_takes_records_from_arrays(plate):
    loads, supports = cantilever(12, 8)
    first = plate.iterate().compliance
    plate.restart()
    plate.update(np.array([[12, 4, 0, 1, 0.0]]), supports)
    assert plate.iterate().compliance == first


@pytest.mark.parametrize("name, remedy", [
    ("volume_fraction", r"pass it to update\(\)"), ("blob", r"pass it to update\(\)"),
    ("subdivision", r"pass it to restart\(\)"), ("penalty", r"pass it to iterate\(\)"),
    ("width", "create another Optimiser"),
    ("volume_fracton", r"did you mean volume_fraction\? Pass"),
    ("colour", "there is no such setting"),
])
def test_says_what_to_call_instead_of_an_assignment(plate, name, remedy):
    with pytest.raises(AttributeError, match=f"Optimiser.*{name}.*{remedy}"):
        setattr(plate, name, 3)
    assert (plate.width, plate.height, plate.load_cases) == (12, 8, 1)
    assert (plate.subdivision, plate.mesh_factor, plate.volume_fraction) == (2, 2, 0.5)


def test_a_host_may_derive_classes(plate):
    class Mine(voxam.Optimiser):
        calls = 0

        def iterate(self, *arguments, **options):
            self.calls += 1
            return super().iterate(*arguments, **options)

    with Mine(3, 2) as mine:
        with pytest.raises(voxam.VoxamError, match="replaced"):
            plate.iterate()
        mine.update(*cantilever(3, 2))
        assert mine.iterate().compliance > 0 and mine.calls == 1
        with pytest.raises(AttributeError, match="pass it to update"):
            mine.volume_fraction = 0.3


def test_a_forgotten_optimiser_makes_room_for_the_next():
    for _ in range(3):
        voxam.Optimiser(3, 2)
    cycle = [voxam.Optimiser(3, 2)]
    cycle.append(cycle)
    del cycle
    gc.collect()
    with voxam.Optimiser(3, 2) as optimiser:
        with pytest.raises(voxam.VoxamError, match="call update"):
            optimiser.iterate()


def test_what_another_copy_of_the_package_left_is_replaced():
    with voxam._library.exclusive() as library:
        library._InitVoxamApp(12, 8, 1, 1, 0.5, 1, voxam.Optimiser._restart_id)
    with voxam.Optimiser(12, 8, subdivision=2, mesh_factor=2) as optimiser:
        optimiser.update(*cantilever(12, 8))
        picture = np.full(optimiser.picture_shape, 77, np.float32)
        assert np.all(optimiser.iterate(out=picture).picture < 1.001)


def test_threads_wait_for_one_another(plate):
    alone = [plate.iterate().compliance for _ in range(40)]
    plate.restart()

    def work(_):
        return plate.iterate().compliance

    with ThreadPoolExecutor(4) as pool:
        assert sorted(pool.map(work, range(40))) == sorted(alone)


def test_closing_waits_for_the_iteration_of_another_thread():
    for _ in range(5):
        optimiser = voxam.Optimiser(60, 40)
        optimiser.update(*cantilever(60, 40))
        started = threading.Event()

        def work():
            started.set()
            with pytest.raises(voxam.VoxamError, match="closed"):
                while True:
                    assert optimiser.iterate().compliance > 0

        with ThreadPoolExecutor(1) as pool:
            working = pool.submit(work)
            started.wait()
            optimiser.close()
            working.result()
