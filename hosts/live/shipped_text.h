#pragma once

#include <QString>
#include <string>

/// The title or the description of a scene. Those of the scenes that come with the program are in
/// the language of the window, while they are unchanged.
QString shippedText(const std::string& text);
