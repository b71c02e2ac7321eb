"""Two-dimensional structural topology optimisation.

A plate is ``width`` x ``height`` square elements. x counts columns from the left, y rows from the
top; nodes are the corners of the elements, (0, 0) to (width, height). A positive ``fx`` pulls to
the right, a positive ``fy`` downwards. Every array of this package is indexed ``[y, x]``.

    with voxam.Optimiser(60, 40, volume_fraction=0.4) as optimiser:
        optimiser.update([voxam.Load(60, 20, fy=1)], [voxam.Support(0, y) for y in range(41)])
        for _ in range(50):
            result = optimiser.iterate()

`Optimiser` lets a structure form, `Analysis` computes what a design is worth, `Game` scores one
quickly in single precision, `scenes` reads scene files, `designs` reads and writes designs. There
can be one of each solver in a process at a time: a newer one takes the place of the older. Calls
from several threads wait for one another, and other threads run meanwhile.

Wrong arguments are `ValueError` or `TypeError`; what only the library can find, such as a plate
that nothing holds, is `ProblemError`, whose text says what to do.

The shared library is looked for where the environment variable ``VOXAM_LIBRARY`` says, else in
this package's folder and in the one around it, in a clone of the project in build/release, else
where the system finds it.

``python -m voxam SCENE.json`` shows a structure forming; it needs matplotlib.
`voxam.study` runs a scene many times while some of its values vary.
"""

from . import designs, scenes
from ._analysis import Analysis, MechanismError, Response
from ._game import Game, Score
from ._library import LibraryNotFoundError, OutOfMemoryError, ProblemError, VoxamError
from ._library import performance_test
from ._optimiser import Iteration, Optimiser, Times
from ._plate import Load, Support

__version__ = "1.2.0"

__all__ = [
    "Analysis",
    "Game",
    "Iteration",
    "LibraryNotFoundError",
    "Load",
    "MechanismError",
    "Optimiser",
    "OutOfMemoryError",
    "ProblemError",
    "Response",
    "Score",
    "Support",
    "Times",
    "VoxamError",
    "designs",
    "performance_test",
    "scenes",
]
