"""Where the runs are made: processes of this machine, or a Dask cluster.

Both engines take tasks as they need them and yield outcomes as they come. No more than a few tasks
per worker are under way at a time, so that neither scenes nor results pile up.
"""

from __future__ import annotations

import collections
import multiprocessing
import multiprocessing.connection
import os
import signal
import threading
import time
from concurrent.futures import FIRST_COMPLETED, Future, ProcessPoolExecutor, wait
from concurrent.futures.process import BrokenProcessPool
from typing import Any, Callable, Deque, Dict, Iterator, List, Optional, Tuple

from .._library import VoxamError
from ._plan import StudyError
from ._work import Outcome, Task, failure, refused, work

Stop = Callable[[], bool]

_AHEAD = 2  # tasks per worker: one in progress, one that waits
_ATTEMPTS = 3  # in company; then one alone, which shows whether the run ends its process
_BETWEEN_LOOKS = 0.01  # seconds, at what a cluster has finished
_RETRIES = 2  # of what a worker of a cluster raises


def cores() -> int:
    """Cores that this process may use."""
    if hasattr(os, "sched_getaffinity"):
        return len(os.sched_getaffinity(0))
    return os.cpu_count() or 1


class Processes:
    """Processes of this machine. One that dies is replaced, and its run is made again."""

    def __init__(self, count: int, function: Callable[[Task], Outcome] = work) -> None:
        self._count = count
        self._function = function
        self._executor = self._new_executor()
        self._running: Dict[Future[Outcome], Task] = {}
        self._again: Deque[Task] = collections.deque()
        self._attempts: Dict[str, int] = collections.defaultdict(int)
        self._has_finished_one = False

    @property
    def description(self) -> str:
        return f"{self._count} process{'es' if self._count > 1 else ''}"

    def run(self, tasks: Iterator[Task], stop: Stop) -> Iterator[Tuple[Task, Outcome]]:
        """Makes the runs. Once stop() is true it starts no more and yields those under way."""
        try:
            while True:
                if not stop():
                    self._submit(tasks)
                else:
                    self._cancel_waiting()
                if not self._running:
                    return
                done, _ = wait(self._running, return_when=FIRST_COMPLETED)
                finished, broken = self._collect(done)
                yield from finished
                if broken:
                    yield from self._recover(broken)
        finally:
            self._end()

    def _new_executor(self) -> ProcessPoolExecutor:
        return ProcessPoolExecutor(self._count, multiprocessing.get_context("spawn"), _begin_worker)

    def _submit(self, tasks: Iterator[Task]) -> None:
        while len(self._running) < _AHEAD * self._count:
            task = self._next(tasks)
            if task is None:
                return
            try:
                self._running[self._executor.submit(self._function, task)] = task
            except BrokenProcessPool:  # since the last look; the tasks under way tell as well
                self._again.appendleft(task)
                if not self._running:
                    self._executor = self._new_executor()
                else:
                    return
            if self._is_suspect(task):
                return

    def _next(self, tasks: Iterator[Task]) -> Optional[Task]:
        """The next task. One whose company has often died waits until it can be alone."""
        if any(self._is_suspect(task) for task in self._running.values()):
            return None
        if self._again:
            alone = self._is_suspect(self._again[0])
            return None if alone and self._running else self._again.popleft()
        return next(tasks, None)

    def _is_suspect(self, task: Task) -> bool:
        return self._attempts.get(task.key, 0) >= _ATTEMPTS

    def _collect(self, done: Any) -> Tuple[List[Tuple[Task, Outcome]], List[Task]]:
        finished, broken = [], []
        for future in done:
            task = self._running.pop(future)
            if future.cancelled():
                continue
            try:
                finished.append((task, future.result()))
                self._has_finished_one = True
                self._attempts.pop(task.key, None)
            except BrokenProcessPool:
                broken.append(task)
        return finished, broken

    def _recover(self, broken: List[Task]) -> Iterator[Tuple[Task, Outcome]]:
        """After the death of a process all others are ended by the executor, and all their runs
        are lost."""
        finished, others = self._collect(wait(self._running).done)
        yield from finished
        broken += others
        self._executor.shutdown()
        self._executor = self._new_executor()
        for task in broken:
            if self._is_suspect(task):
                yield task, refused(task, failure("its process ended, also without others, by "
                                                  "a signal or because memory ran out", "machine"))
                continue
            self._attempts[task.key] += 1
            self._again.append(task)
        if not self._has_finished_one and any(map(self._is_suspect, self._again)):
            raise StudyError(
                'processes end before a run is made, for the reasons above. A script has to start '
                'a study below if __name__ == "__main__":, because each process imports the script')

    def _cancel_waiting(self) -> None:
        self._again.clear()
        for future in list(self._running):
            if future.cancel():
                del self._running[future]

    def _end(self) -> None:
        processes = list((getattr(self._executor, "_processes", None) or {}).values())
        if self._running:  # left early, by an error
            for process in processes:
                process.terminate()
        self._executor.shutdown()


def _begin_worker() -> None:
    """Runs first in each process. Ctrl-C is the parent's to handle; what the library prints would
    spoil the progress bar; and a parent that was killed leaves nobody to work for."""
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    with open(os.devnull, "w") as nowhere:
        os.dup2(nowhere.fileno(), 1)
    threading.Thread(target=_end_with_parent, daemon=True).start()


def _end_with_parent() -> None:
    parent = multiprocessing.parent_process()
    assert parent is not None
    multiprocessing.connection.wait([parent.sentinel])
    os._exit(1)


class Cluster:
    """A Dask cluster: its scheduler places the runs, and repeats those of workers that die."""

    def __init__(self, client: Any) -> None:
        self._client = client

    @property
    def description(self) -> str:
        count = len(self._workers())
        link = getattr(self._client, "dashboard_link", "")
        return (f"{count} worker{'' if count == 1 else 's'} of the cluster"
                + (f"\ndashboard: {link}" if link else "")
                + ("" if count else "\nthe runs begin when a worker joins"))

    def run(self, tasks: Iterator[Task], stop: Stop) -> Iterator[Tuple[Task, Outcome]]:
        """Makes the runs. Once stop() is true it starts no more and yields those under way."""
        from distributed import as_completed

        running: Dict[Any, Task] = {}
        arriving = as_completed(with_results=True, raise_errors=False, loop=self._client.loop)
        try:
            self._submit(tasks, running, arriving)
            while running:
                batch = arriving.next_batch(block=False)
                if not batch:
                    if stop() and not self._workers():
                        return  # none of them has begun
                    time.sleep(_BETWEEN_LOOKS)
                    continue
                for future, result in batch:
                    task = running.pop(future)
                    yield task, self._outcome(task, future, result)
                    future.release()
                if not stop():
                    self._submit(tasks, running, arriving)
        finally:
            self._client.cancel(list(running), force=True)

    def _workers(self) -> Dict[str, Any]:
        workers: Dict[str, Any] = self._client.scheduler_info()["workers"]
        return workers

    def _submit(self, tasks: Iterator[Task], running: Dict[Any, Task], arriving: Any) -> None:
        while len(running) < _AHEAD * max(1, len(self._workers())) + 1:
            task = next(tasks, None)
            if task is None:
                return
            future = self._client.submit(work, task, key=f"voxam-{task.key}", retries=_RETRIES)
            running[future] = task
            arriving.add(future)

    def _outcome(self, task: Task, future: Any, result: Any) -> Outcome:
        from distributed.scheduler import KilledWorker

        if future.status == "finished":
            outcome: Outcome = result
            return outcome
        error = result[1] if isinstance(result, tuple) else result
        if isinstance(error, KilledWorker):
            return refused(task, failure("its worker died, and so did others that tried it "
                                         "again", "machine"))
        if isinstance(error, (VoxamError, ImportError)):
            raise StudyError(f"a worker of the cluster cannot run Voxam: {error}. Install the same "
                             "package there as here")
        if future.status in ("cancelled", "lost"):
            raise StudyError("the cluster has dropped the runs, or its scheduler has ended. Run "
                             "the same command again to continue")
        return refused(task, failure(f"{type(error).__name__}: {error}", "machine"))
