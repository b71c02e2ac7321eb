"""Measures studies: runs an hour, and what a run costs beyond the computation itself.

    python3 benchmarks/studies.py [--runs N] [--turns N] [--grid 60x40]

Needs the package voxam on the path, its library in VOXAM_LIBRARY, and for the rows of a cluster
python3-distributed. Each way of running is measured with few runs and with many; the difference is
free of the start of processes. "processor" is the processor time of a run in all processes
together, and "overhead" its excess over the plain loop. Other work on the machine changes both, and
the overhead is a small difference of large numbers. "own" is the part of the calling process, which
hands out the runs and stores their results; it hardly depends on other work. For a cluster it
contains the scheduler.
"""

from __future__ import annotations

import argparse
import contextlib
import json
import os
import resource
import statistics
import tempfile
import time
from typing import Any, Callable, Dict, List, Tuple

from voxam import study
from voxam.study import _work

GRIDS = ((20, 10), (60, 40))
FEW = 4
EMPTY_TASKS = 3000
PACKED = 200
Spent = Tuple[float, float, float]  # seconds on the clock, of all processors, of this process's


def plan_of(width: int, height: int, runs: int) -> study.Study:
    scene = {"grid": {"width": width, "height": height}, "volumeFraction": 0.5,
             "loads": [{"x": width, "y": height // 2, "fy": 1}],
             "supports": [{"x": 0, "y": [0, height], "fix": "xy"}]}
    return study.Study(scene, draw=study.Draw({"volumeFraction": {"from": 0.3, "to": 0.6}}, runs))


def tasks_of(plan: study.Study) -> List[_work.Task]:
    return [_work.Task(str(i), json.dumps(run.scene), plan.keep) for i, run in enumerate(plan)]


def processors() -> float:
    """Processor time of this process and of all processes that it has waited for."""
    usages = [resource.getrusage(who) for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN)]
    return sum(usage.ru_utime + usage.ru_stime for usage in usages)


def spent(action: Callable[[], Any]) -> Spent:
    clock, before, own = time.perf_counter(), processors(), time.process_time()
    action()
    return time.perf_counter() - clock, processors() - before, time.process_time() - own


def run_plainly(plan: study.Study) -> None:
    """Without results being packed, sent or stored."""
    for task in tasks_of(plan):
        _work._result(json.loads(task.scene), (), {})


def run_in_processes(count: int) -> Callable[[study.Study], None]:
    def action(plan: study.Study) -> None:
        with tempfile.TemporaryDirectory() as folder:
            study.run(plan, folder, processes=count, progress=False)
    return action


def run_on_cluster(workers: int) -> Callable[[study.Study], None]:
    def action(plan: study.Study) -> None:
        with cluster_of(workers) as client, tempfile.TemporaryDirectory() as folder:
            study.run(plan, folder, client=client, progress=False)
    return action


@contextlib.contextmanager
def cluster_of(workers: int) -> Any:
    from distributed import Client, LocalCluster
    with LocalCluster(n_workers=workers, threads_per_worker=1, dashboard_address=None) as cluster:
        with Client(cluster) as client:
            yield client


def ways() -> Dict[str, Callable[[study.Study], None]]:
    counts = sorted({1, os.cpu_count() or 1})
    found = {"plain loop": run_plainly,
             **{f"processes: {count}": run_in_processes(count) for count in counts}}
    with contextlib.suppress(ImportError):
        import distributed  # noqa: F401
        found.update({f"cluster workers: {count}": run_on_cluster(count) for count in counts})
    return found


def compare(width: int, height: int, runs: int, turns: int) -> None:
    few, many = plan_of(width, height, FEW), plan_of(width, height, FEW + runs)
    actions = ways()
    found: Dict[str, List[Spent]] = {name: [] for name in actions}
    for _ in range(turns):
        for name, action in actions.items():
            base, whole = spent(lambda: action(few)), spent(lambda: action(many))
            found[name].append(tuple((b - a) / runs for a, b in zip(base, whole)))
    medians = {name: [statistics.median(times) for times in zip(*times_of_way)]
               for name, times_of_way in found.items()}
    plain = medians["plain loop"][1]
    print(f"\n{width}x{height}, {runs} runs of 100 iterations, medians of {turns} turns\n")
    print("| where              | ms a run | runs/hour | processor ms | overhead ms | own ms |")
    print("| ------------------ | -------: | --------: | -----------: | ----------: | -----: |")
    for name, (clock, cpu, own) in medians.items():
        print(f"| {name:18} | {clock * 1e3:8.1f} | {3600 / clock:9.0f} | {cpu * 1e3:12.1f} | "
              f"{(cpu - plain) * 1e3:11.2f} | {own * 1e3:6.2f} |")
    describe_sizes(many)


def describe_sizes(plan: study.Study) -> None:
    task = tasks_of(plan)[0]
    arrays: Dict[str, Any] = {}
    result = _work._result(json.loads(task.scene), task.keep, arrays)
    _, packing, _ = spent(lambda: [_work.pack(result, task.scene, arrays) for _ in range(PACKED)])
    outcome = _work.work(task)
    print(f"\nbytes a run: {len(task.scene)} to the worker; from it {len(outcome.file)} for the "
          f"file and {len(json.dumps(outcome.record))} for the record; packing takes the worker "
          f"{packing / PACKED * 1e3:.2f} ms")


def measure_scheduler() -> None:
    with contextlib.suppress(ImportError), cluster_of(1) as client:
        numbers = range(-EMPTY_TASKS, 0)
        clock, cpu, _ = spent(lambda: client.gather(client.map(abs, numbers, pure=False)))
        print(f"\nempty tasks through a scheduler and one worker: {EMPTY_TASKS / clock:.0f} a "
              f"second; scheduler and client take {cpu / EMPTY_TASKS * 1e3:.2f} ms each")


def grid_of(text: str) -> Tuple[int, int]:
    width, height = text.split("x")
    return int(width), int(height)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--runs", type=int, default=60, metavar="N",
                        help="runs of each study; 60 if left out")
    parser.add_argument("--turns", type=int, default=3, metavar="N",
                        help="how often each study is measured; 3 if left out")
    parser.add_argument("--grid", type=grid_of, metavar="WIDTHxHEIGHT",
                        help="measure only this plate; 20x10 and 60x40 if left out")
    options = parser.parse_args()
    _work.use_one_thread()
    for grid in GRIDS if options.grid is None else [options.grid]:
        compare(*grid, options.runs, options.turns)
    measure_scheduler()
