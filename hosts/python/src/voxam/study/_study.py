"""Running a study: from its runs to its folder of results."""

from __future__ import annotations

import contextlib
import hashlib
import pathlib
import time
from typing import (Any, Dict, Iterable, Iterator, List, Mapping, Optional, Sequence,
                    Tuple, Union)

from .. import __version__
from ._engines import Cluster, Processes, Stop, cores
from ._folder import COLUMNS, AnyPath, Results, Store, write_tables
from ._plan import KEEP, Run, Study, StudyError, canonical, plain, read_study
from ._progress import Progress
from ._report import write_report
from ._work import Outcome, Task, failure, refused

Scenes = Iterable[Union[Mapping[str, Any], Tuple[Mapping[str, Any], Mapping[str, Any]]]]
_BETWEEN_TABLES = 30.0  # seconds
_NOT_IN_RESULTS = ("$schema", "title", "description")  # keys of a scene without any effect


def run(
    study: Union[Study, AnyPath, Scenes],
    folder: AnyPath,
    *,
    client: Any = None,
    processes: Optional[int] = None,
    keep: Optional[Sequence[str]] = None,
    title: Optional[str] = None,
    progress: bool = True,
    stop: Stop = lambda: False,
) -> Results:
    """Makes the runs of a study that its folder of results does not contain yet, and returns all
    results. A run that fails becomes a row with its reason.

    study      a Study, the path of a study file, or an iterable of scenes: each the object of a
               scene file, or a pair (parameters, scene) whose parameters become columns
    folder     where the results are, or will be
    client     a dask.distributed.Client: the runs are made on its cluster
    processes  how many processes of this machine make runs; one for each core if left out
    keep       "design", "displacements": what is stored beside the numbers, with an iterable of
               scenes; a Study has its own
    title      title of the report
    progress   whether to show progress on standard error
    stop       asked between runs; once true, no more are started

    Processes import the main script of the caller, so a script must call this below
    ``if __name__ == "__main__":``. Raises StudyError when nothing can be run, and OSError when a
    result cannot be written, such as on a full disk. The same call continues in both cases.
    """
    plan = _Plan.of(study, tuple(keep) if keep is not None else None, title)
    if isinstance(client, str):
        raise StudyError("client: a dask.distributed.Client is needed")
    engine: Union[Cluster, Processes] = (
        Cluster(client) if client is not None else Processes(_count(processes)))
    recorder = _Recorder(pathlib.Path(folder), plan,
                         Progress(plan.total, engine.description) if progress else None)
    try:
        for task, outcome in engine.run(recorder.missing(), stop):
            recorder.add(task, outcome)
    except BaseException:
        recorder.try_to_finish()
        raise
    recorder.finish()
    results = Results(recorder.folder)
    results.new = recorder.new
    return results


def _count(processes: Optional[int]) -> int:
    if processes is None:
        return cores()
    if processes < 1:
        raise StudyError(f"processes: {processes} is too few: at least 1 is needed")
    return processes


class _Plan:
    """What is to be run, whether a study or scenes that a caller generates."""

    def __init__(self, runs: Iterable[Run], total: Optional[int], keep: Tuple[str, ...],
                 title: str, document: Any) -> None:
        self.runs = runs
        self.total = total
        self.keep = keep
        self.title = title
        self.document = document

    @classmethod
    def of(cls, study: Any, keep: Optional[Tuple[str, ...]], title: Optional[str]) -> _Plan:
        if isinstance(study, (str, pathlib.Path)):
            study = read_study(study)
        if isinstance(study, Study):
            study.require_a_valid_scene()
            return cls(study, len(study), study.keep if keep is None else keep,
                       title or study.title, study.document())
        if keep is not None and set(keep) - set(KEEP):
            raise StudyError("keep: allowed are " + ", ".join(KEEP))
        if isinstance(study, Mapping) or not hasattr(study, "__iter__"):
            raise StudyError("a Study, the path of a study file, or an iterable of scenes is "
                             "needed")
        total = len(study) if hasattr(study, "__len__") else None
        return cls(map(_pair, study), total, ("design",) if keep is None else keep,
                   title or "Study", None)


def _pair(scene: Any) -> Run:
    parameters, document = scene if isinstance(scene, tuple) else ({}, scene)
    if not isinstance(document, Mapping):
        raise StudyError("a scene is needed, as the object of a scene file")
    for name in parameters:
        if name in COLUMNS:  # the result would replace the parameter
            raise StudyError(f'parameter "{name}": the results have a column of this name: rename '
                             "the parameter")
    return Run(plain(parameters, "parameters"), dict(document))


class _Recorder:
    """Puts results into the folder, and knows what is missing there."""

    def __init__(self, folder: pathlib.Path, plan: _Plan, progress: Optional[Progress]) -> None:
        self.folder = folder
        self._plan = plan
        self._progress = progress
        self._store = Store(folder)
        self._store.prepare()
        self._entries: List[Tuple[Dict[str, Any], str]] = []
        self._parameters: Dict[str, None] = {}  # in order of appearance
        self._records: Dict[str, Dict[str, Any]] = {}
        self._next_tables = time.monotonic() + _BETWEEN_TABLES
        self.new = 0  # runs made since the start

    def missing(self) -> Iterator[Task]:
        """The runs that are not in the folder, or that failed for a reason of the machine."""
        under_way = set()
        for parameters, scene, problem in self._plan.runs:
            try:
                text = canonical({key: value for key, value in scene.items()
                                  if key not in _NOT_IN_RESULTS})
            except StudyError as error:
                text, problem = "{}", str(error)
            key = run_key(text + problem, self._plan.keep)
            self._entries.append((parameters, key))
            self._parameters.update(dict.fromkeys(parameters))
            if key in under_way:
                continue
            under_way.add(key)
            if problem:
                self._refuse(Task(key, text, self._plan.keep), problem)
                continue
            record = self._store.record(key)
            if record is None or record["result"].get("cause") == "machine":
                yield Task(key, text, self._plan.keep)
                continue
            self._records[key] = record
            if self._progress:
                self._progress.keep()

    def _refuse(self, task: Task, problem: str) -> None:
        """A run that no worker can make."""
        self.add(task, refused(task, failure(problem, "scene")))

    def add(self, task: Task, outcome: Outcome) -> None:
        made = outcome.record["made"].get("voxam", __version__)
        if made != __version__:
            raise StudyError(f'{outcome.record["made"].get("host")} has version {made} of Voxam, '
                             f"and this machine has {__version__}: install the same on both")
        self._store.write(task.key, outcome.file)
        self._records[task.key] = outcome.record
        self.new += 1
        if self._progress:
            self._progress.made(outcome.record["result"]["status"] == "failed")
        if time.monotonic() >= self._next_tables:
            started = time.monotonic()
            self._write_tables()
            taken = time.monotonic() - started
            self._next_tables = time.monotonic() + max(_BETWEEN_TABLES, 20 * taken)

    def finish(self) -> None:
        if self._progress:
            self._progress.finish()
        self._write_tables()
        write_report(Results(self.folder))

    def try_to_finish(self) -> None:
        """Tables and report of what there is, unless what went wrong prevents that as well."""
        with contextlib.suppress(OSError):
            self.finish()

    def _write_tables(self) -> None:
        write_tables(self.folder, self._plan.title, self._plan.document, list(self._parameters),
                     self._entries, self._records, self._plan.total)


def run_key(scene: str, keep: Tuple[str, ...]) -> str:
    """The name of a run: equal for equal scenes of one version, from which equal results come."""
    text = canonical({"scene": scene, "keep": sorted(keep), "voxam": __version__})
    return hashlib.sha256(text.encode("utf-8")).hexdigest()[:20]
