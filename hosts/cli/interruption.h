#pragma once

/// From now on the first SIGINT or SIGTERM is only remembered; the next one ends the process at
/// once, as usual. Whoever stops reading what is printed ends nothing.
void watchForInterruption();

/// The signal that came, or 0.
int interruption();
