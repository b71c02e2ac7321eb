"""Whatever is called with whatever, a host goes on: only the exceptions that are documented come,
and nothing is written where it should not be. With the seed of a failure it happens again."""

import random

import numpy as np
import pytest
from conftest import cantilever, mask

import voxam

NUMBERS = [0, 1, 0.5, -1, 3, 1e9, 1e39, float("nan"), float("inf"), None, "1", 2**31, -(2**63)]


class Host:
    """Keeps one optimiser and one game, or none."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.optimiser = None
        self.game = None
        self.size = (4, 3)

    def one_of(self, *values):
        return self.random.choice(values)

    def maybe(self, good, wild=0.01):
        """Good as a rule, and any number now and then."""
        return self.random.choice(NUMBERS) if self.random.random() < wild else good

    def node(self):
        return [self.maybe(self.random.randint(0, side)) for side in self.size]

    def loads(self):
        extra = [(*self.node(), self.maybe(0.5), self.maybe(1), self.maybe(self.one_of(0, 1)))
                 for _ in range(self.one_of(0, 1, 2))]
        return cantilever(*self.size)[0] * self.one_of(0, 1, 1, 1) + extra

    def supports(self):
        extra = [(*self.node(), self.maybe(self.one_of("x", "y", "xy")))] * self.one_of(0, 0, 1)
        return cantilever(*self.size)[1] * self.one_of(0, 1, 1, 1) + extra

    def mask(self):
        width, height = self.size
        cells = [(self.random.randrange(width), self.random.randrange(height)) for _ in range(2)]
        good = mask(width, height, *cells)
        bad = self.one_of(good.T, good.astype(float), 1)
        return self.random.choices([None, good, bad], [20, 5, 1])[0]

    def create(self):
        if self.random.random() < 0.3:
            self.close()
        self.size = [self.maybe(self.random.randint(1, 7), 0.01) for _ in range(2)]
        try:
            self.optimiser = voxam.Optimiser(
                *self.size, volume_fraction=self.maybe(0.5), load_cases=2,
                subdivision=self.maybe(self.one_of(1, 2), 0.01),
                mesh_factor=self.maybe(self.one_of(1, 2), 0.01))
        finally:
            self.size = self.optimiser._plate.width, self.optimiser._plate.height

    def update(self):
        self.optimiser.update(
            self.loads(), self.supports(), volume_fraction=self.maybe(0.4), void=self.mask(),
            solid=self.mask(), second_solid=self.mask(), blob=self.mask(),
            load_cases_in_use=self.one_of(None, None, None, [0], [0, 1], [], [2], ["0"]))

    def iterate(self):
        rows, columns = self.optimiser.picture_shape
        guarded = np.full((rows + 2, columns), 77, np.float32)
        out = self.one_of(None, *[guarded[1:-1]] * 8, guarded, guarded[1:-1].T)
        try:
            result = self.optimiser.iterate(
                self.maybe(3), move_blob=self.one_of(True, False), out=out)
        finally:
            assert np.all(guarded[[0, -1]] == 77)
        assert result.picture.shape == (rows, columns)
        assert np.all((result.picture > -1e-5) & (result.picture < 1 + 1e-5))
        assert 0 <= result.change <= 1 and result.compliance >= 0
        assert result.blob is None or result.blob.shape == self.size[::-1]

    def restart(self):
        self.optimiser.restart(
            keep_design=self.one_of(True, False), subdivision=self.one_of(None, 1, 2),
            mesh_factor=self.maybe(self.one_of(None, 1, 2)))

    def play(self):
        if self.game is not None:
            self.game.close()
        self.game = voxam.Game(*self.size, self.loads(), self.supports(), load_cases=2)
        for _ in range(2):
            densities = np.full(self.size[::-1], self.maybe(self.one_of(0, 0.5, 1)))
            score = self.game.solve(densities)
            assert score.energies.shape == densities.shape and score.compliance >= 0

    def close(self):
        self.optimiser.close()

    def step(self):
        actions = [self.create, self.update, self.iterate, self.restart, self.play, self.close]
        action, = self.random.choices(actions, [2, 10, 20, 2, 4, 0.5])
        try:
            action()
        except (voxam.VoxamError, ValueError, TypeError) as error:
            assert str(error) and "std::" not in str(error)
            return 0
        return 1


@pytest.mark.parametrize("seed", range(5))
def test_random_calls(seed):
    host = Host(seed)
    host.optimiser = voxam.Optimiser(4, 3, load_cases=2)
    try:
        good = sum(host.step() for _ in range(1500))
        assert good > 300
    finally:
        host.optimiser.close()
        if host.game is not None:
            host.game.close()
