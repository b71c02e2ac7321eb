"""The folder of results: a file for each run, and tables made of them.

    results.csv      a row for each run (results.parquet as well where pyarrow is installed)
    report.html      the report
    index.json       the study, what was run with which library, and what the columns mean
    runs/ab/ab….npz  a run by its key: the arrays, the record and the scene

Each file is written under another name first and then renamed, so it is whole or not there. The
tables can be made again from the files of the runs.
"""

from __future__ import annotations

import contextlib
import csv
import io
import json
import os
import pathlib
import zipfile
import zlib
from typing import Any, Dict, Iterator, List, Mapping, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._picture import png

AnyPath = Union[str, "pathlib.Path"]

COLUMNS = {
    "run": "number of the run in the study, from 1",
    "status": "done or failed",
    "warnings": "warnings about the result; several are separated by semicolons",
    "reason": "why the run failed",
    "compliance_drawn": "compliance of the design in black and white, the weighted sum over the "
                        "load cases in use, by the analysis in double precision; smaller is "
                        "stiffer",
    "compliance_optimising": "compliance that the optimiser worked with in its last iteration: "
                             "with grey cells, which the penalty weakens",
    "volume": "material of the design, 0 to 1",
    "volume_drawn": "material of the design in black and white, 0 to 1",
    "level": "density from which a cell counts as solid as drawn; it keeps the volume",
    "loose": "cells of the design in black and white that nothing holds; the analysis leaves them "
             "out",
    "change": "largest change of a density in the last iteration, 0 to 1",
    "iterations": "iterations made",
    "seconds": "time of the run in its worker",
    "voxam": "version of the package",
    "library": "first 16 digits of the SHA-256 of the library's file",
    "host": "machine that made the run",
    "key": "name of the run's file in runs/: hash of the scene and the version",
}
_TYPES = {  # in a frame, also where no run has a value
    **dict.fromkeys(("compliance_drawn", "compliance_optimising", "volume", "volume_drawn", "level",
                     "change", "seconds"), "float"),
    **dict.fromkeys(("loose", "iterations"), "Int64"),
}
_IDENTITY = ("voxam", "library", "python", "numpy", "host", "processor")


class Results:
    """The results of a study, read from their folder.

        results = voxam.study.Results("trade-off.results")
        table = results.frame()
        design = results.design(1)
    """

    def __init__(self, folder: AnyPath) -> None:
        """Raises OSError when there are no results in the folder."""
        self.folder = pathlib.Path(folder)
        index = json.loads((self.folder / "index.json").read_text("utf-8"))
        self.title = str(index["title"])
        self.parameters: List[str] = index["parameters"]
        self.new = 0  #: how many runs were made by the call of run() that returned this
        self._planned: Optional[int] = index.get("planned")
        self._entries: List[Tuple[Dict[str, Any], str]] = [
            (entry["parameters"], entry["key"]) for entry in index["runs"]]
        store = Store(self.folder)
        self._records = {key: record for key in {key for _, key in self._entries}
                         if (record := store.record(key)) is not None}

    def __len__(self) -> int:
        """The runs of the study, also those that have not been made yet."""
        return max(len(self._entries), self._planned or 0)

    def rows(self) -> List[Dict[str, Any]]:
        """A dictionary for each run: its parameters, and the columns of results.csv."""
        return list(rows(self._entries, self._records))

    def frame(self) -> Any:
        """The rows as a pandas.DataFrame, with the number of the run as its index."""
        import pandas

        columns = table_columns(self.parameters)
        frame = pandas.DataFrame(self.rows(), columns=columns).set_index("run")
        return frame.astype(_TYPES)

    def design(self, run: int) -> npt.NDArray[np.float32]:
        """The design of a run by its number: [y, x], 0 void to 1 solid. Raises KeyError when the
        run has none."""
        return self.array(run, "design")

    def displacements(self, run: int) -> npt.NDArray[np.float32]:
        """The displacements of a run's design as drawn: [load case in use, y, x, direction] of
        the nodes, NaN where there is no material. Raises KeyError unless the study keeps
        them."""
        return self.array(run, "displacements")

    def scene(self, run: int) -> Dict[str, Any]:
        """The scene of a run, as the object of a scene file."""
        scene: Dict[str, Any] = json.loads(self._member(run, "scene.json"))
        return scene

    def save_picture(self, run: int, file: AnyPath) -> None:
        """Writes a run's design as a PNG file: a grey pixel for each cell, black is solid."""
        write_whole(pathlib.Path(file), png(self.design(run)))

    def array(self, run: int, name: str) -> npt.NDArray[Any]:
        """An array of a run by its name."""
        array: npt.NDArray[Any] = np.load(io.BytesIO(self._member(run, name + ".npy")))
        return array

    def _member(self, run: int, name: str) -> bytes:
        if not 1 <= run <= len(self):
            raise KeyError(f"run {run}: there are runs 1 to {len(self)}")
        key = self._entries[run - 1][1] if run <= len(self._entries) else None
        if key not in self._records:
            raise KeyError(f"run {run} has not been made yet: run the study again")
        with zipfile.ZipFile(Store(self.folder).path(key)) as archive:
            try:
                return archive.read(name)
            except KeyError:
                raise KeyError(f"run {run} has no {pathlib.Path(name).stem}: "
                               + self._why_missing(key)) from None

    def _why_missing(self, key: str) -> str:
        result = self._records[key]["result"]
        if result["status"] == "failed":
            return "it failed"
        return "; ".join(['"keep" of the study may not name it', *result["warnings"]])


class Store:
    """The files of the runs."""

    def __init__(self, folder: pathlib.Path) -> None:
        self.folder = folder

    def prepare(self) -> None:
        """Makes the folder, so that a wrong path is an error before the first run. Raises
        OSError."""
        (self.folder / "runs").mkdir(parents=True, exist_ok=True)

    def path(self, key: str) -> pathlib.Path:
        return self.folder / "runs" / key[:2] / f"{key}.npz"

    def write(self, key: str, data: bytes) -> None:
        write_whole(self.path(key), data)

    def record(self, key: str) -> Optional[Dict[str, Any]]:
        """The record of a run; None if there is no file, or one that is damaged."""
        try:
            with zipfile.ZipFile(self.path(key)) as archive:
                if archive.testzip() is not None:
                    return None
                record: Dict[str, Any] = json.loads(archive.read("record.json"))
                return record
        except (OSError, ValueError, KeyError, zipfile.BadZipFile, zlib.error, EOFError):
            return None


def write_whole(path: pathlib.Path, data: bytes) -> None:
    """Writes a file so that it is whole or not there, also when the process is killed."""
    path.parent.mkdir(parents=True, exist_ok=True)
    partial = path.with_name(f".{path.name}.{os.getpid()}")
    try:
        partial.write_bytes(data)
        os.replace(partial, path)
    except BaseException:
        with contextlib.suppress(OSError):
            partial.unlink()
        raise


def rows(entries: Sequence[Tuple[Mapping[str, Any], str]],
         records: Mapping[str, Mapping[str, Any]]) -> Iterator[Dict[str, Any]]:
    """The rows of the runs that were made, in the order of the study."""
    for number, (parameters, key) in enumerate(entries, 1):
        record = records.get(key)
        if record is None:
            continue
        result, made = record["result"], record["made"]
        yield {"run": number, **parameters,
               **{name: result.get(name) for name in COLUMNS if name in result},
               "warnings": "; ".join(result.get("warnings", ())), "key": key,
               **{name: made.get(name) for name in ("seconds", "voxam", "library", "host")}}


def table_columns(parameters: Sequence[str]) -> List[str]:
    first, *others = COLUMNS
    return [first, *parameters, *(name for name in others if name not in parameters)]


def write_tables(folder: pathlib.Path, title: str, study: Any, parameters: Sequence[str],
                 entries: Sequence[Tuple[Mapping[str, Any], str]],
                 records: Mapping[str, Mapping[str, Any]], planned: Optional[int]) -> None:
    """Writes results.csv, results.parquet and index.json. `planned` is the number of all runs, if
    it is known."""
    table = [{name: _cell(value) for name, value in row.items()} for row in rows(entries, records)]
    columns = table_columns(parameters)
    text = io.StringIO()
    writer = csv.DictWriter(text, columns, lineterminator="\n")
    writer.writeheader()
    writer.writerows(table)
    write_whole(folder / "results.csv", text.getvalue().encode("utf-8"))
    _write_parquet(folder / "results.parquet", columns, table)
    made_with = {tuple(sorted(made.items())): made for made in (
        {name: record["made"][name] for name in _IDENTITY if name in record["made"]}
        for record in records.values())}
    index = {
        "title": title, "parameters": list(parameters), "study": study,
        "planned": planned, "made": sum(key in records for _, key in entries),
        "made_with": [made for _, made in sorted(made_with.items()) if made],
        "columns": {name: COLUMNS.get(name, "value of the scene") for name in columns},
        "runs": [{"key": key, "parameters": values} for values, key in entries],
    }
    write_whole(folder / "index.json", json.dumps(index, indent=1).encode("utf-8"))


def _cell(value: Any) -> Any:
    return json.dumps(value) if isinstance(value, (dict, list, bool)) else value


def _write_parquet(path: pathlib.Path, columns: Sequence[str],
                   table: Sequence[Mapping[str, Any]]) -> None:
    """Where pyarrow is installed; a column of numbers and texts becomes one of texts."""
    try:
        import pyarrow
        import pyarrow.parquet
    except ImportError:
        return
    data = {}
    for name in columns:
        values = [row.get(name) for row in table]
        is_text = any(isinstance(value, str) for value in values)
        data[name] = [str(value) if is_text and value is not None else value for value in values]
    buffer = io.BytesIO()
    pyarrow.parquet.write_table(pyarrow.table(data), buffer)
    write_whole(path, buffer.getvalue())
