#include "view_actions.h"

#include <QMenu>
#include <QSettings>
#include <array>

#include "action_text.h"
#include "icons.h"
#include "plate_view.h"

namespace {

constexpr double ZOOM_FACTOR = 1.25;
constexpr const char* THEME_KEY = "theme";

}  // namespace

ViewActions::ViewActions(QMainWindow& window)
    : zoomIn(makeZoom(tr("Zoom &in"), QKeySequence("Ctrl++"), ZOOM_FACTOR)),
      zoomOut(makeZoom(tr("Zoom &out"), QKeySequence("Ctrl+-"), 1 / ZOOM_FACTOR)),
      fit(new QAction(icon(Glyph::FIT), tr("&Whole plate"), this)),
      fullScreen(new QAction(tr("&Full screen"), this)),
      themes(nullptr) {
    zoomIn->setIcon(icon(Glyph::ZOOM_IN));
    zoomOut->setIcon(icon(Glyph::ZOOM_OUT));
    fit->setShortcut(QKeySequence("Ctrl+0"));
    explain(*fit, tr("Show the whole plate; the wheel zooms, the middle button moves it"));
    connect(fit, &QAction::triggered, this, [this] {
        for (PlateView* view : views) view->fit();
    });
    fullScreen->setShortcut(QKeySequence(Qt::Key_F11));
    fullScreen->setCheckable(true);
    explain(*fullScreen, {});
    connect(fullScreen, &QAction::toggled, &window, [&window](bool isFull) {
        window.setWindowState(window.windowState().setFlag(Qt::WindowFullScreen, isFull));
    });
    makeThemes();
}

QAction* ViewActions::makeZoom(const QString& name, const QKeySequence& key, double factor) {
    auto* action = new QAction(name, this);
    action->setShortcut(key);
    explain(*action, {});
    connect(action, &QAction::triggered, this, [this, factor] {
        for (PlateView* view : views) view->zoom(factor);
    });
    return action;
}

void ViewActions::makeThemes() {
    const std::array<QString, 3> names = {tr("Colours of the des&ktop"), tr("&Light"), tr("&Dark")};
    const int chosen = QSettings().value(THEME_KEY, 0).toInt();
    for (int theme = 0; theme < static_cast<int>(names.size()); ++theme) {
        QAction* action = themes.addAction(names[static_cast<std::size_t>(theme)]);
        action->setCheckable(true);
        action->setChecked(theme == chosen);
        connect(action, &QAction::triggered, this, [this, theme] {
            QSettings().setValue(THEME_KEY, theme);
            applyTheme(static_cast<Theme>(theme));
            emit themeChanged();
        });
    }
    applyTheme(static_cast<Theme>(chosen));
}

void ViewActions::fillMenu(QMenu& menu) const {
    menu.addActions({zoomIn, zoomOut, fit});
    menu.addSeparator();
    menu.addAction(fullScreen);
    menu.addSeparator();
    menu.addActions(themes.actions());
    menu.addSeparator();
}
