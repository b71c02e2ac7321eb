#pragma once

/// How the window looks: as the desktop does, or light or dark whatever that is.
enum class Theme { DESKTOP, LIGHT, DARK };

/// Dresses the whole program.
void applyTheme(Theme theme);

/// Whether the palette in force is dark.
bool isDarkNow();
