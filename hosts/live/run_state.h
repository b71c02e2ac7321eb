#pragma once

#include <QString>

/// The state of the optimiser that the window shows.
enum class RunState {
    AS_KEPT,    ///< the design of the file or of a variant is shown; nothing runs
    FORMING,    ///< iterations follow one another
    COMPUTING,  ///< one iteration takes its time
    SETTLED,    ///< at rest; an edit wakes it
    PAUSED,     ///< by the user
    FAILED      ///< the library refuses the scene as it is
};

QString wordFor(RunState state);
