#pragma once

#include <QIcon>

/// Icons of the tool bar, in the text colour of the present palette, for any pixel density.
enum class Glyph {
    OPEN,
    SAVE,
    UNDO,
    REDO,
    PLAY,
    PAUSE,
    STEP,
    RESTART,
    SELECT,
    ADD_LOAD,
    PIN,
    ROLLER_X,
    ROLLER_Y,
    KEEP_VOID,
    KEEP_SOLID,
    KEEP_SECOND_SOLID,
    BLOB,
    ERASER,
    PENCIL,
    LINE,
    RUBBER,
    ROUND_BRUSH,
    SQUARE_BRUSH,
    RECTANGLE,
    DISC,
    FIT,
    ZOOM_IN,
    ZOOM_OUT,
    GALLERY,
    DRAW_MODE,
    KEEP_VARIANT
};

QIcon icon(Glyph glyph);

/// The icon of the window, desktop/voxam-live.svg.
QIcon applicationIcon();
