"""What people see while a study runs."""

from __future__ import annotations

import shutil
import sys
import time
from typing import Optional, TextIO

_WIDTH = 80
_BETWEEN_LINES = 30.0  # seconds, where there is no terminal
_BETWEEN_DRAWINGS = 0.1


class Progress:
    """A live line on a terminal, elsewhere a line now and then: how many runs are made, at what
    rate, and the time left."""

    def __init__(self, total: Optional[int], place: str = "",
                 stream: Optional[TextIO] = None) -> None:
        """`place` describes where the runs are made; it is written once."""
        self._total = total
        self._stream = stream or sys.stderr
        self._is_live = self._stream.isatty()
        self._start = self._last = time.monotonic()
        self._kept = self._made = self._failed = 0
        if place:
            self._stream.write(f"running on {place}\n")
            self._stream.flush()

    def keep(self) -> None:
        """A run was there from an earlier time."""
        self._kept += 1

    def made(self, failed: bool) -> None:
        """A run was made."""
        self._made += 1
        self._failed += failed
        self.draw()

    def draw(self) -> None:
        now = time.monotonic()
        if now - self._last < (_BETWEEN_DRAWINGS if self._is_live else _BETWEEN_LINES):
            return
        self._last = now
        width = min(_WIDTH, shutil.get_terminal_size((_WIDTH, 24)).columns - 1)
        if self._is_live:
            self._stream.write("\r\x1b[K" + self.line(now - self._start, width))
        else:
            self._stream.write(self.line(now - self._start, _WIDTH) + "\n")
        self._stream.flush()

    def finish(self) -> None:
        """Ends the live line."""
        if self._is_live:
            self._stream.write("\r\x1b[K")
            self._stream.flush()

    def line(self, seconds: float, width: int) -> str:
        """What is known after so many seconds. What there is no room for is left out."""
        done = self._kept + self._made
        rate = self._made / seconds if seconds > 0 else 0.0
        parts = [f"{done}/{self._total}" if self._total is not None else f"{done} runs"]
        if self._failed:
            parts.append(f"{self._failed} failed")
        if self._made:
            parts.append(shown_rate(rate))
            if self._total is not None:
                parts.append(shown_time((self._total - done) / rate) + " left")
        text = "  ".join(parts)
        room = width - len(text) - 3
        if self._total and room >= 10:
            room = min(room, 30)
            filled = min(room, room * done // self._total)
            text = f"[{'#' * filled}{'.' * (room - filled)}] {text}"
        return text[:width]


def counted(number: int, noun: str) -> str:
    return f"{number} {noun}{'' if number == 1 else 's'}"


def shown_rate(per_second: float) -> str:
    if per_second >= 1:
        return f"{per_second:.3g} runs/s"
    return f"{per_second * 60:.3g} runs/min" if per_second >= 1 / 60 else (
        f"{per_second * 3600:.3g} runs/h")


def shown_time(seconds: float) -> str:
    minutes, rest = divmod(round(seconds), 60)
    hours, minutes = divmod(minutes, 60)
    if hours:
        return f"{hours}:{minutes:02}:{rest:02} h"
    return f"{minutes}:{rest:02} min" if minutes else f"{rest} s"
