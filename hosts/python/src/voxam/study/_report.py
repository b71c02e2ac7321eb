"""The report: one HTML file that needs no other file and no network."""

from __future__ import annotations

import base64
import html
import json
import math
import pathlib
from typing import Any, Dict, List, Mapping

from ._folder import Results, table_columns, write_whole
from ._picture import png, shrunk

_MOST_PICTURES = 400
_PIXELS_OF_ALL = 4e6  # of all pictures, which bounds the size of the file
_SIDES = (120, 480)  # of a picture, in pixels
_HIDDEN = ("key", "voxam", "library", "host")
_NAMES = {
    "compliance_drawn": "compliance as drawn",
    "compliance_optimising": "compliance while optimising",
    "volume_drawn": "volume as drawn",
}


def write_report(results: Results) -> pathlib.Path:
    """Writes report.html into the folder of the results."""
    rows = results.rows()
    columns = [name for name in table_columns(results.parameters) if name not in _HIDDEN]
    data = {
        "columns": columns,
        "parameters": results.parameters,
        "names": _NAMES,
        "rows": [[_finite(row.get(name)) for name in columns] for row in rows],
        "pictures": _pictures(results, rows),
        "summary": _summary(len(results), rows),
    }
    template = pathlib.Path(__file__).with_name("report.html").read_text("utf-8")
    # In a script element only "</" and "<!--" have a meaning; in JSON "<" may be written so.
    text = json.dumps(data, allow_nan=False).replace("<", "\\u003c")
    page = template.replace("@TITLE@", html.escape(results.title)).replace("@DATA@", text)
    file = results.folder / "report.html"
    write_whole(file, page.encode("utf-8"))
    return file


def _finite(value: Any) -> Any:
    return None if isinstance(value, float) and not math.isfinite(value) else value


def _summary(total: int, rows: List[Dict[str, Any]]) -> str:
    failed = sum(row["status"] == "failed" for row in rows)
    parts = [f"{len(rows)} of {total} runs" if len(rows) < total else f"{total} runs"]
    if failed:
        parts.append(f"{failed} failed")
    versions = sorted({str(row["voxam"]) for row in rows if row.get("voxam")})
    if versions:
        parts.append("Voxam " + ", ".join(versions))
    seconds = sum(row.get("seconds") or 0.0 for row in rows)
    parts.append(f"{seconds:.3g} s of computation")
    return ", ".join(parts) + "."


def _pictures(results: Results, rows: List[Dict[str, Any]]) -> Dict[int, Mapping[str, Any]]:
    """Pictures by the number of the run, of as many runs as a page can show."""
    runs = [row["run"] for row in rows if row["status"] == "done"]
    step = max(1.0, len(runs) / _MOST_PICTURES)
    chosen = [runs[int(i * step)] for i in range(min(len(runs), _MOST_PICTURES))]
    least, most = _SIDES
    side = int(min(most, max(least, math.sqrt(_PIXELS_OF_ALL / max(1, len(chosen))))))
    pictures: Dict[int, Mapping[str, Any]] = {}
    for run in chosen:
        try:
            design = shrunk(results.design(run), side)
        except KeyError:
            return {}  # the study does not keep designs
        source = "data:image/png;base64," + base64.b64encode(png(design)).decode("ascii")
        pictures[run] = {"source": source, "aspect": design.shape[1] / design.shape[0]}
    return pictures
