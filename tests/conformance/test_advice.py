"""Every host, the page and the manual give the same advice on a text of the library."""
import pathlib
import re

import pytest

from voxam import _optimiser

ROOT = pathlib.Path(__file__).parents[2]


def text_of(name):
    """The words of a source or a table, without the ends of the literals that they are split into."""
    return re.sub(r"\s+", " ", re.sub(r'"\s*\+?\s*"', "", (ROOT / name).read_text()))


@pytest.mark.parametrize("text, advice", _optimiser._ADVICE.items())
def test_advice(text, advice):
    for host in ("hosts/csharp/Voxam.cs", "hosts/live/problems.cpp",
                 "hosts/web/page/src/words.ts"):
        after = text_of(host).split(f'"{text}"', 1)[1]
        assert advice in after[:len(advice) + 60], host
    row = text_of("docs/hosting.md").split(f'| "{text}" |', 1)[1].split(" |", 2)[1]
    for sentence in re.split(r"(?<=\.) ", advice)[1:]:  # the first is a reason
        assert sentence.rstrip(".") in row
