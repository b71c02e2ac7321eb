#pragma once

/// Remembers the first SIGINT, SIGTERM or SIGHUP from now on; the next one ends the process at
/// once, as usual. SIGPIPE is ignored: the run continues if the reader of the output stops.
void watchForInterruption();

/// The signal that came, or 0.
int interruption();
