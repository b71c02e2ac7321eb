#pragma once

#include <QIcon>

/// Icons of the tool bar, drawn in the colour that texts have in the present palette, for any pixel
/// density.
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
    FIT,
    ZOOM_IN,
    ZOOM_OUT,
    GALLERY,
    DRAW_MODE
};

QIcon icon(Glyph glyph);

/// Of the window: the picture of desktop/voxam-live.svg.
QIcon applicationIcon();
