"""The commands ``python -m voxam study`` and ``python -m voxam dataset``."""

from __future__ import annotations

import argparse
import contextlib
import pathlib
import signal
import sys
import textwrap
import time
from typing import Any, Callable, Iterator, List, Optional

from .._library import VoxamError
from ._dataset import DatasetOptions, make_dataset
from ._engines import Stop
from ._folder import Results
from ._plan import Study, StudyError, read_study
from ._progress import counted, shown_time
from ._study import run

_EXIT_FAILED_RUNS = 1
_EXIT_INPUT = 2
_SIGNALS = (signal.SIGINT, signal.SIGTERM)


def study_main(arguments: Optional[List[str]] = None) -> int:
    """The command voxam-study; returns the exit status."""
    parser = _parser(
        "study", "Runs a study: many runs of a scene in which some values vary.",
        "The folder gets results.csv, report.html, index.json and a file for each run. The same "
        "command continues after an interruption. Exit status: 0 when all runs are made, 1 when "
        "some of them failed, 2 after an error, 130 or 143 when a signal ended the study. "
        "docs/studies.md describes study files.")
    parser.add_argument("study", metavar="STUDY.json", help="study file")
    parser.add_argument("--output", metavar="FOLDER", help="folder of the results; the name of the "
                        "study file with .results if left out")
    parser.add_argument("--pictures", action="store_true",
                        help="also write each design as FOLDER/pictures/RUN.png")
    parser.add_argument("--dry-run", action="store_true",
                        help="show the first runs and their number, and run nothing")
    options = parser.parse_args(arguments)
    return _guarded(options, lambda stop: _run_study(options, stop))


def dataset_main(arguments: Optional[List[str]] = None) -> int:
    """The command voxam-dataset; returns the exit status."""
    parser = _parser(
        "dataset", "Makes a data set for learning: optimised designs for random supports, loads "
        "and volumes, with their displacements, as NumPy arrays.",
        "FOLDER/README.md describes every array. The same command continues after an "
        "interruption. Exit status: 0 when the data set is made, 2 after an error, 130 or 143 when "
        "a signal ended the command.")
    parser.add_argument("folder", metavar="FOLDER", help="folder of the data set")
    parser.add_argument("--designs", type=int, metavar="N", default=1000,
                        help="how many designs; 1000 if left out")
    parser.add_argument("--seed", type=int, metavar="S", default=0,
                        help="the same seed draws the same plates; 0 if left out")
    parser.add_argument("--grid", metavar="WxH", default="60x40",
                        help="elements of the plate; 60x40 if left out")
    parser.add_argument("--subdivision", type=int, metavar="N", default=1,
                        help="cells of the design per edge of an element; 1 if left out")
    parser.add_argument("--iterations", type=int, metavar="N", default=100,
                        help="iterations for each design; 100 if left out")
    options = parser.parse_args(arguments)
    return _guarded(options, lambda stop: _make_dataset(options, stop))


def _parser(name: str, description: str, epilog: str) -> argparse.ArgumentParser:
    program = pathlib.Path(sys.argv[0]).name
    if not program.startswith("voxam-"):
        program = f"python -m voxam {name}"
    parser = argparse.ArgumentParser(prog=program, description=description,
                                     epilog=epilog, allow_abbrev=False)
    parser.add_argument("--processes", type=int, metavar="N",
                        help="processes of this machine that make runs; one for each core if left "
                        "out")
    parser.add_argument("--scheduler", metavar="ADDRESS",
                        help="make the runs on the Dask cluster with this scheduler, such as "
                        "tcp://host:8786")
    parser.add_argument("--quiet", action="store_true", help="print nothing but errors")
    return parser


class _Signals:
    """The first SIGINT or SIGTERM lets the runs in progress end; the second ends at once."""

    def __init__(self) -> None:
        self.received: Optional[int] = None

    def __call__(self) -> bool:
        return self.received is not None

    def handle(self, number: int, _: Any) -> None:
        if self.received is not None:
            raise KeyboardInterrupt
        self.received = number
        print("\nending after the runs in progress; press Ctrl-C again to end at once",
              file=sys.stderr)

    @contextlib.contextmanager
    def handled(self) -> Iterator[None]:
        before = [(number, signal.signal(number, self.handle)) for number in _SIGNALS]
        try:
            yield
        finally:
            for number, handler in before:
                signal.signal(number, handler)


def _guarded(options: argparse.Namespace, action: Callable[[_Signals], int]) -> int:
    """Runs a command, and turns what can go wrong into one line and an exit status."""
    signals = _Signals()
    try:
        with signals.handled():
            if options.scheduler and options.processes is not None:
                raise StudyError("--processes: a cluster has workers of its own: leave it out")
            status = action(signals)
            return 128 + signals.received if signals.received is not None else status
    except KeyboardInterrupt:
        _complain("interrupted. Results so far are kept: run the same command again to continue")
        return 128 + (signals.received or signal.SIGINT)
    except OSError as error:
        place = f"{error.filename}: " if error.filename else ""
        _complain(f"{place}{error.strerror or error}. Results so far are kept. Solve the problem "
                  "and run the same command again to continue")
    except (ValueError, VoxamError, ImportError) as error:
        _complain(str(error))
    return _EXIT_INPUT


def _complain(text: str) -> None:
    print(f"voxam: {text}", file=sys.stderr)


@contextlib.contextmanager
def _client(address: Optional[str]) -> Iterator[Any]:
    """A client of the cluster; None without an address."""
    if address is None:
        yield None
        return
    try:
        from distributed import Client
    except ImportError:
        raise StudyError("--scheduler: install Dask: apt-get install python3-distributed, or pip "
                         "install distributed") from None
    try:
        client = Client(address, timeout=10)
    except (OSError, ValueError) as error:
        reason = " ".join(str(error).split())
        raise StudyError(
            f"--scheduler: {address}: {reason}. Check that the scheduler runs") from None
    with client:
        yield client


def _run_study(options: argparse.Namespace, stop: Stop) -> int:
    file = pathlib.Path(options.study)
    try:
        study = read_study(file)
    except OSError as error:  # not of the results, which have another advice
        raise StudyError(f"{error.filename or file}: {error.strerror or error}") from None
    if options.dry_run:
        return _show(study)
    folder = pathlib.Path(options.output) if options.output else file.with_suffix(".results")
    started = time.monotonic()
    with _client(options.scheduler) as client:
        results = run(study, folder, client=client, processes=options.processes,
                      progress=not options.quiet, stop=stop)
    rows = results.rows()
    if options.pictures:
        for row in rows:
            if row["status"] == "done" and "design" in study.keep:
                results.save_picture(row["run"], folder / "pictures" / f"{row['run']:05}.png")
    failed = [row for row in rows if row["status"] == "failed"]
    if not options.quiet:
        _sum_up(study, folder, rows, failed, results.new, time.monotonic() - started)
    return _EXIT_FAILED_RUNS if failed else 0


def _sum_up(study: Study, folder: pathlib.Path, rows: List[Any], failed: List[Any], new: int,
            seconds: float) -> None:
    print(f"{counted(new, 'run')} made in {shown_time(seconds)}; {len(rows)} of {len(study)} done"
          + (f", {len(failed)} failed" if failed else ""))
    for row in failed[:3]:
        print(textwrap.fill(f"run {row['run']}: {row['reason']}", 80, initial_indent="  ",
                            subsequent_indent="    "))
    if len(failed) > 3:
        print(f"  and {len(failed) - 3} more: see the column reason")
    if len(rows) < len(study):
        print("run the same command again to continue")
    for name in ("results.csv", "report.html"):
        print(f"{folder / name}")


def _show(study: Study) -> int:
    for number, entry in enumerate(study, 1):
        if number > 5:
            print("...")
            break
        values = ", ".join(f"{path} = {value}" for path, value in entry.parameters.items())
        print(f"{number}: {values}")
    print(counted(len(study), "run"))
    return 0


def _make_dataset(options: argparse.Namespace, stop: Stop) -> int:
    width, separator, height = options.grid.lower().partition("x")
    if not (separator and width.isdigit() and height.isdigit()):
        raise StudyError(f"--grid: {options.grid} is not a size: write it as 60x40")
    wanted = DatasetOptions(options.designs, options.seed, int(width), int(height),
                            options.subdivision, options.iterations)
    started = time.monotonic()
    with _client(options.scheduler) as client:
        folder = make_dataset(options.folder, wanted, client=client, processes=options.processes,
                              progress=not options.quiet, stop=stop)
    if folder is not None and not options.quiet:
        print(f"{counted(options.designs, 'design')} in {shown_time(time.monotonic() - started)}")
        print(folder / "README.md")
    return 0
