"""The analysis, against beam theory and hand calculations."""

import pickle

import numpy as np
import pytest
from conftest import cantilever, wall

import voxam


def test_a_slender_beam_obeys_beam_theory():
    length, depth = 400, 8
    analysis = voxam.Analysis(length, depth, *cantilever(length, depth))
    response = analysis.solve(np.ones((depth, length), np.float32))
    theory = length**3 / (3 * depth**3 / 12) + 1.2 * 2.6 * length / depth
    assert response.compliance == pytest.approx(theory, rel=0.01)
    assert response.compliance == pytest.approx(496194.13836764492, rel=1e-10)
    assert response.energies.sum() == pytest.approx(response.compliance, rel=1e-12)
    # Bending: tension above, compression below, and the tip goes down by the compliance.
    assert response.stresses[0, 0, 200, 0] == pytest.approx(
        -response.stresses[0, -1, 200, 0], rel=1e-6)
    assert response.stresses[0, 0, 200, 0] > 0
    assert response.displacements[0, depth // 2, length, 1] == pytest.approx(response.compliance)


def test_results_are_indexed_y_x():
    # A strip of modulus 2, pulled along x by a unit stress and free to slide along its end.
    loads = [voxam.Load(6, y, fx=0.5) for y in (2, 3)]
    loads += [voxam.Load(*load[:2], 0.5, 0, 1) for load in loads]
    strip = np.zeros((4, 6))
    strip[2] = 2
    strip[0, 1] = 1  # touches nothing
    supports = [voxam.Support(0, 2), voxam.Support(0, 3, "x")]
    with voxam.Analysis(6, 4, loads, supports, load_cases=2) as analysis:
        response = analysis.solve(strip)
    assert response.compliances == pytest.approx([3, 3])
    for k in range(2):
        assert np.allclose(response.energies[k], (strip == 2) * 0.5)
        assert np.allclose(response.von_mises[k], strip == 2)
        assert np.allclose(response.displacements[k, 2:4, :, 0], np.arange(7) / 2)
        assert np.isnan(response.displacements[k, 4]).all()
    assert np.argwhere(response.loose).tolist() == [[0, 1]]


@pytest.mark.parametrize("cells, kind, complaint", [
    ([(0, 1), (1, 1)], voxam.ProblemError, "no material under the load at node .3, 2.: move"),
    ([(0, 0), (1, 1), (2, 1)], voxam.MechanismError, "free to move.*: add supports"),
])
def test_says_why_there_is_no_response(cells, kind, complaint):
    moduli = np.zeros((3, 3))
    for x, y in cells:
        moduli[y, x] = 1
    analysis = voxam.Analysis(3, 3, [voxam.Load(3, 2, fy=1)], wall(3))
    with pytest.raises(kind, match=complaint) as error:
        analysis.solve(moduli)
    if kind is voxam.MechanismError:
        assert error.value.loose.tolist() == [[False] * 3, [False, True, True], [False] * 3]
        assert str(pickle.loads(pickle.dumps(error.value))) == str(error.value)
    assert analysis.solve(np.ones((3, 3))).compliance > 0
    for wrong in -1, np.nan, np.inf:
        with pytest.raises(ValueError, match=r"moduli\[1, 2\]: .* is not a finite number from 0"):
            moduli[1, 2] = wrong
            analysis.solve(moduli)
