#pragma once

#include <QIcon>

/// Icons of the tool bar, drawn in the colour that texts have in the present palette, for any pixel
/// density.
enum class Glyph {
    Open,
    Save,
    Undo,
    Redo,
    Play,
    Pause,
    Step,
    Restart,
    Select,
    AddLoad,
    Pin,
    RollerX,
    RollerY,
    KeepVoid,
    KeepSolid,
    KeepSecondSolid,
    Blob,
    Eraser,
    Pencil,
    Line,
    Rubber,
    RoundBrush,
    SquareBrush,
    Fit,
    ZoomIn,
    ZoomOut,
    Gallery,
    DrawMode
};

QIcon icon(Glyph glyph);
