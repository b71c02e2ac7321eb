#pragma once

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QTimer>
#include <functional>

#include "plate_view.h"
#include "tour.h"
#include "workbench.h"

/// The tour of the window for beginners: five steps from the first drag to the gallery.
class StartHere : public QObject {
    Q_OBJECT

public:
    /// The widgets that the tour points at.
    struct Parts {
        QMainWindow& window;
        Workbench& bench;
        PlateView& plate;
        QDockWidget& settings;
        QWidget& volume;  ///< in `settings`
        QAction& keepVoid;
        QAction& drawMode;
        QAction& gallery;
        /// Opens the scene of the tour. Returns false if the user keeps the present scene.
        std::function<bool()> openScene;
    };

    explicit StartHere(const Parts& shown);

    /// Of the Help menu.
    QAction* const action;

    /// Offers the tour, unless it was offered before.
    void offerOnce();

    Tour& tour() { return steps; }

private:
    enum Step { DRAG, VOLUME, KEEP_VOID, DRAW, GALLERY };

    void start();
    std::vector<Tour::Step> makeSteps();
    void followScene();
    void settle();
    /// The button of an action in a tool bar, in the window.
    QRect buttonOf(QAction& button) const;
    QRect placeOf(const QWidget& widget) const;
    QRect placeOfRow(const QWidget& field) const;

    Parts parts;
    Tour steps;
    std::shared_ptr<const Scene> before;
    std::optional<Step> finished;  // reported when the hand lets go
    QTimer settling;
};
