#pragma once

#include <QString>

/// Decimals of the fields for lengths in millimetres: enough for the smallest element.
constexpr int LENGTH_DECIMALS = 6;
/// Significant digits of compliances.
constexpr int COMPLIANCE_DIGITS = 5;

/// A number for the window: in the user's locale, with this many significant digits and without an
/// exponent. Do not use it for files.
QString numberText(double value, int digits = 4);

/// A coordinate or length on the plate: "40" or "12.5", in the separators of the locale.
QString placeText(double value);

/// "Compliance 12.3", or "Compliance of the half 12.3" of a scene that is one half of the plate.
QString complianceText(double compliance, bool ofHalf);

/// A share from 0 to 1 in percent, with one decimal: "39.7 %". No line breaks before the sign.
QString percentText(double share);
