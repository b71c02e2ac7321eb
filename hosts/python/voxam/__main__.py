"""Shows the structure of a scene forming, with matplotlib."""

from __future__ import annotations

import argparse
import contextlib
import sys
from typing import Any, Iterator, List, Optional

from . import VoxamError, scenes
from ._optimiser import Iteration

_EXIT_PROBLEM = 1
_EXIT_INPUT = 2
_EXIT_INTERRUPTED = 130


def _arguments(arguments: Optional[List[str]]) -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="python -m voxam", description="Shows the structure of a scene forming, in a window.",
        epilog="All keys of a scene are read but densities, description and $schema.")
    parser.add_argument("scene", help="scene file, as for the program voxam optimise")
    parser.add_argument("--iterations", type=int, metavar="N", help="instead of the scene's number")
    parser.add_argument("--blob", action="store_true", help="let the blob of the scene move")
    parser.add_argument("--save", metavar="FILE",
                        help="write FILE instead of opening a window: OUT.gif shows the structure "
                        "forming, OUT.png, .svg or .pdf the last picture")
    return parser.parse_args(arguments)


class _View:
    """The picture, and below it the compliance over the iterations."""

    def __init__(self, scene: scenes.Scene, iterations: int) -> None:
        from matplotlib import pyplot

        self._scene = scene
        self._numbers: List[int] = []
        self._compliances: List[float] = []
        height = min(8.0, 7.0 * scene.height / scene.width)
        self.figure, (self._plate, self._plot) = pyplot.subplots(
            2, 1, figsize=(7.0, height + 2.2), height_ratios=(height, 1.4),
            layout="constrained", num=f"Voxam: {scene.title}")
        self._image: Any = None
        (self._line,) = self._plot.plot([], [], color="tab:blue")
        self._plot.set_yscale("log")
        self._plot.set_xlim(0, iterations)
        self._plot.set_xlabel("iteration")
        self._plot.set_ylabel("compliance")

    def show(self, number: int, result: Iteration) -> None:
        scene = self._scene
        if self._image is None or self._image.get_array().shape != result.picture.shape:
            self._plate.clear()
            self._image = self._plate.imshow(
                result.picture, cmap="gray", vmin=0, vmax=1, interpolation="bilinear",
                extent=(0, scene.width, scene.height, 0))
        self._image.set_data(result.picture)
        self._plate.set_title(f"{scene.title}: iteration {number}, compliance "
                              f"{result.compliance:.4g}, volume {result.volume:.1%}")
        self._numbers.append(number)
        self._compliances.append(result.compliance)
        self._line.set_data(self._numbers, self._compliances)
        self._plot.relim()
        self._plot.autoscale_view(scalex=False)

    def draw(self) -> bool:
        """Draws the window and handles its events; returns whether it is still open."""
        from matplotlib import pyplot

        self.figure.canvas.draw()
        self.figure.set_layout_engine("none")  # once is enough: it takes longer than an iteration
        self.figure.canvas.flush_events()
        return bool(pyplot.fignum_exists(self.figure.number))


@contextlib.contextmanager
def _recording(view: _View, file: str) -> Iterator[Any]:
    """Calls after each iteration what this yields; the file is there when the context ends."""
    if not file.lower().endswith(".gif"):
        yield lambda: None
        view.figure.savefig(file)
        return
    from matplotlib.animation import PillowWriter

    writer = PillowWriter(fps=15)
    with writer.saving(view.figure, file, dpi=80):
        yield writer.grab_frame


def _check_ending(file: Optional[str]) -> None:
    from matplotlib.figure import Figure

    endings = ["gif", *sorted(Figure().canvas.get_supported_filetypes())]
    if file and file.lower().rpartition(".")[2] not in endings:
        raise ValueError(f"--save: {file}: the ending has to be one of " + ", ".join(endings))


def _run(options: argparse.Namespace, scene: scenes.Scene) -> None:
    import matplotlib

    if options.save:
        matplotlib.use("agg")
    from matplotlib import pyplot

    _check_ending(options.save)
    if not options.save and pyplot.get_backend().lower() == "agg":
        raise VoxamError("there is no display for a window: use --save FILE")
    count = scene.iterations if options.iterations is None else options.iterations
    view = _View(scene, count)
    iterations = scenes.run(scene, count, options.blob)
    with contextlib.closing(iterations):
        if options.save:
            with _recording(view, options.save) as record:
                for number, result in iterations:
                    view.show(number, result)
                    record()
            return
        pyplot.show(block=False)
        for number, result in iterations:
            view.show(number, result)
            if not view.draw():
                return
    pyplot.show()


def main(arguments: Optional[List[str]] = None) -> int:
    options = _arguments(arguments)
    try:
        scene = scenes.read_scene(options.scene)
        if options.iterations is not None and options.iterations < 1:
            raise ValueError(f"--iterations: {options.iterations} is not above 0")
        _run(options, scene)
    except ImportError as error:
        print(f"voxam: {error}: install matplotlib", file=sys.stderr)
        return _EXIT_INPUT
    except VoxamError as error:
        print(f"voxam: {options.scene}: {error}", file=sys.stderr)
        return _EXIT_PROBLEM
    except (OSError, ValueError) as error:
        print(f"voxam: {error}", file=sys.stderr)
        return _EXIT_INPUT
    except KeyboardInterrupt:
        return _EXIT_INTERRUPTED
    return 0


if __name__ == "__main__":
    sys.exit(main())
