"""Designs as PNG files."""

from __future__ import annotations

import struct
import zlib
from typing import Any

import numpy as np
import numpy.typing as npt


def png(material: npt.NDArray[Any]) -> bytes:
    """A PNG file of a grey pixel for each cell, [y, x]: black is solid (1), white is void (0).
    Written here, so that results need nothing but NumPy."""
    grey = np.round(255 * (1 - np.clip(np.nan_to_num(material), 0, 1))).astype(np.uint8)
    height, width = grey.shape
    lines = np.zeros((height, width + 1), np.uint8)  # each begins with its filter, 0 for none
    lines[:, 1:] = grey
    header = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header)
            + _chunk(b"IDAT", zlib.compress(lines.tobytes(), 9)) + _chunk(b"IEND", b""))


def _chunk(kind: bytes, data: bytes) -> bytes:
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def shrunk(material: npt.NDArray[Any], most: int) -> npt.NDArray[Any]:
    """The material in fewer cells, none of whose sides is above `most`: means of square blocks."""
    block = -(-max(material.shape) // most)
    if block <= 1:
        return material
    height, width = (-(-side // block) * block for side in material.shape)
    padded = np.pad(material, ((0, height - material.shape[0]), (0, width - material.shape[1])),
                    mode="edge")
    blocks = padded.reshape(height // block, block, width // block, block)
    means: npt.NDArray[Any] = blocks.mean(axis=(1, 3))
    return means
