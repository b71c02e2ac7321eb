"""Shows the structure of a scene forming, with matplotlib."""

from __future__ import annotations

import argparse
import contextlib
import os
import pathlib
import sys
from typing import Any, Iterable, List, Optional, Tuple

from . import VoxamError, scenes
from ._optimiser import Iteration
from .study._command import dataset_main, study_main

_EXIT_PROBLEM = 1
_EXIT_INPUT = 2
_EXIT_INTERRUPTED = 130


def _arguments(arguments: Optional[List[str]]) -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="python -m voxam", description="Shows the structure of a scene forming, in a window.",
        epilog="All keys of a scene are read but densities, description and $schema. A scene that "
        "has densities and no volumeFraction is a scene for voxam score or voxam.Game. \"python -m voxam "
        "study\" and \"python -m voxam dataset\" run many scenes; each has a --help of its own.")
    parser.add_argument("scene", help="scene file, as for the program voxam optimise")
    parser.add_argument("--iterations", type=int, metavar="N", help="instead of the scene's number")
    parser.add_argument("--blob", action="store_true", help="let the blob of the scene move; "
                        "without it the hole stays where it is")
    parser.add_argument("--save", metavar="FILE",
                        help="write FILE instead of opening a window: OUT.gif shows the structure "
                        "forming, OUT.png, .svg or .pdf the last picture. Written even if "
                        "Ctrl-C or an error ends the run early")
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


def _tell_progress(text: str) -> None:
    """The line that a terminal shows while a file is made; an empty one clears it."""
    if sys.stderr.isatty():
        print(f"\r\033[K{text}", end="", file=sys.stderr, flush=True)


def _save(view: _View, iterations: Iterable[Tuple[int, Iteration]], file: str) -> None:
    """Writes the file at the end, and whatever that is, unless nothing has formed."""
    from matplotlib.animation import PillowWriter

    animation = PillowWriter(fps=15) if file.lower().endswith(".gif") else None
    if animation:
        animation.setup(view.figure, file, dpi=80)
    said = ""
    try:
        for number, result in iterations:
            view.show(number, result)
            if animation:
                animation.grab_frame()
            said = (f"iteration {number}, compliance {result.compliance:.6g}, "
                    f"volume {result.volume:.1%}")
            _tell_progress(said)
    finally:
        _tell_progress("")
        if said:
            if animation:
                animation.finish()
            else:
                view.figure.savefig(file)
            print(f"{file}: {said}")


def _show(view: _View, iterations: Iterable[Tuple[int, Iteration]]) -> None:
    from matplotlib import pyplot

    pyplot.show(block=False)
    for number, result in iterations:
        view.show(number, result)
        if not view.draw():
            return
    pyplot.show()


def _check_file(name: str) -> None:
    """Refuses before a long run what could not be written after it."""
    from matplotlib.figure import Figure

    file = pathlib.Path(name)
    endings = [".gif", *("." + ending for ending in
                         sorted(Figure().canvas.get_supported_filetypes()) if ending != "gif")]
    if file.suffix.lower() not in endings:
        raise ValueError(f"--save: {file}: the ending has to be one of " + ", ".join(endings))
    if file.exists() and not file.is_file():
        raise ValueError(f"--save: {file}: is not a regular file")
    if not file.parent.is_dir():
        raise ValueError(f"--save: {file}: there is no folder {file.parent}")
    if not os.access(file if file.exists() else file.parent, os.W_OK):
        raise ValueError(f"--save: {file}: cannot be written")


def _check(options: argparse.Namespace, scene: scenes.Scene) -> None:
    from matplotlib import pyplot

    if options.iterations is not None and options.iterations < 1:
        raise ValueError(f"--iterations: {options.iterations} is not above 0")
    if options.blob and not scene.has_blob:
        raise ValueError(f"{options.scene}: blob: no elements, needed for --blob")
    if options.save:
        _check_file(options.save)
    elif pyplot.get_backend().lower() == "agg":
        raise VoxamError("there is no display for a window: use --save FILE")


def _run(options: argparse.Namespace) -> None:
    import matplotlib

    if options.save:
        matplotlib.use("agg")
    scene = scenes.read_scene(options.scene)
    _check(options, scene)
    count = scene.iterations if options.iterations is None else options.iterations
    view = _View(scene, count)
    with contextlib.closing(scenes.run(scene, count, options.blob)) as iterations:
        if options.save:
            _save(view, iterations, options.save)
        else:
            _show(view, iterations)


def main(arguments: Optional[List[str]] = None) -> int:
    given = sys.argv[1:] if arguments is None else arguments
    if given[:1] == ["study"]:
        return study_main(given[1:])
    if given[:1] == ["dataset"]:
        return dataset_main(given[1:])
    options = _arguments(given)
    try:
        _run(options)
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
