"""Studies: many runs of one scene, on this machine or on a cluster.

A study is a base scene and what varies in it: every combination of some values, a list, random
draws, or scenes from a Python generator. Its results are a folder with a table, the designs and a
report.

    study = voxam.study.Study(scene, combine={"volumeFraction": [0.3, 0.4, 0.5]})
    results = voxam.study.run(study, "trade-off.results")
    table = results.frame()  # with pandas

The runs are made by processes of this machine, one for each core; with
``run(study, folder, client=dask.distributed.Client(address))`` by the workers of a Dask cluster.
The same call continues after an interruption.

``python -m voxam study STUDY.json`` does the same for a study file, and ``python -m voxam dataset``
makes a data set for learning. docs/studies.md describes all three.
"""

from ._dataset import DatasetOptions, make_dataset
from ._folder import Results
from ._plan import Draw, Run, Study, StudyError, read_study
from ._report import write_report
from ._study import run

__all__ = [
    "DatasetOptions",
    "Draw",
    "Results",
    "Run",
    "Study",
    "StudyError",
    "make_dataset",
    "read_study",
    "run",
    "write_report",
]
