#pragma once

#include <QString>

/// A number for people: in the digits and separators of their locale, with so many significant
/// digits, and never as 1.02e+07. What goes to files does not come from here.
QString numberText(double value, int digits = 4);

/// A share from 0 to 1 in percent, with one decimal: "39.7 %".
QString percentText(double share);
