#pragma once

/// How the window looks: like the desktop, or always light or dark.
enum class Theme { DESKTOP, LIGHT, DARK };

/// Applies to the whole program.
void applyTheme(Theme theme);

/// Whether the present palette is dark.
bool isDarkNow();
