#include "number_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <cmath>

namespace {

// Beyond, zeros would have to be counted.
constexpr double LEAST = 1e-4;
constexpr double MOST = 1e9;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Numbers)
};

QString superscript(int number) {
    static const QString digits = QString::fromUtf8("⁰¹²³⁴⁵⁶⁷⁸⁹");
    QString text = number < 0 ? QString::fromUtf8("⁻") : QString();
    for (const QChar digit : QString::number(std::abs(number))) text += digits[digit.digitValue()];
    return text;
}

}  // namespace

QString numberText(double value, int digits) {
    const QLocale locale;
    if (value == 0 || !std::isfinite(value)) return locale.toString(value, 'g', digits);
    const int power = static_cast<int>(std::floor(std::log10(std::abs(value))));
    if (std::abs(value) >= LEAST && std::abs(value) < MOST)
        return locale.toString(value, 'f', std::max(0, digits - 1 - power));
    return locale.toString(value / std::pow(10.0, power), 'f', digits - 1) +
           QString::fromUtf8(" × 10") + superscript(power);
}

QString complianceText(double compliance, bool ofHalf) {
    const QString words =
        ofHalf ? Words::tr("Compliance of the half %1") : Words::tr("Compliance %1");
    return words.arg(numberText(compliance, COMPLIANCE_DIGITS));
}

QString placeText(double value) { return QLocale().toString(value, 'g', 6); }

QString percentText(double share) {
    return QLocale().toString(100 * share, 'f', 1) + QChar::Nbsp + "%";
}
