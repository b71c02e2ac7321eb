#include "theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

namespace {

QPalette paletteOf(const QColor& window, const QColor& base, const QColor& text,
                   const QColor& faint, const QColor& highlight) {
    QPalette palette(text, window, window.lighter(110), window.darker(160), window.darker(130),
                     text, base);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, highlight);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

QPalette lightPalette() {
    return paletteOf(QColor(240, 240, 242), Qt::white, QColor(28, 29, 32), QColor(140, 142, 148),
                     QColor(0, 105, 217));
}

QPalette darkPalette() {
    return paletteOf(QColor(43, 45, 49), QColor(32, 34, 37), QColor(226, 228, 232),
                     QColor(128, 132, 140), QColor(47, 128, 237));
}

}  // namespace

void applyTheme(Theme theme) {
    // One style in all themes: it follows a palette, which not every native style does.
    QApplication::setStyle("Fusion");
    if (theme == Theme::DESKTOP)
        QApplication::setPalette(QPalette());
    else
        QApplication::setPalette(theme == Theme::DARK ? darkPalette() : lightPalette());
}

bool isDarkNow() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }
