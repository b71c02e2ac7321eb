#pragma once

#include <QString>

/// The state of the optimiser that the window shows.
enum class RunState {
    AS_KEPT,      ///< the design of the file or of a variant is shown; nothing runs
    FORMING,      ///< iterations follow one another
    COMPUTING,    ///< one iteration takes its time
    SETTLED,      ///< at rest; an edit wakes it
    NOT_SETTLED,  ///< at rest after many iterations, although the compliance still changes
    PAUSED,       ///< by the user
    FAILED        ///< the library refuses the scene as it is
};

/// Whether the run has ended by itself. Play continues it.
inline bool isAtRest(RunState state) {
    return state == RunState::SETTLED || state == RunState::NOT_SETTLED;
}

QString wordFor(RunState state);
