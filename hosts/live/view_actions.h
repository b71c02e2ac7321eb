#pragma once

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>

#include "theme.h"

class PlateView;

/// Zoom, full screen and theme.
class ViewActions : public QObject {
    Q_OBJECT

public:
    explicit ViewActions(QMainWindow& window);

    /// Zooming applies to these views together.
    void addView(PlateView& view) { views.append(&view); }
    void fillMenu(QMenu& menu) const;
    QAction* wholePlate() const { return fit; }
    QList<QAction*> toolBarActions() const { return {zoomOut, fit, zoomIn}; }

signals:
    void themeChanged();

private:
    QAction* makeZoom(const QString& name, const QKeySequence& key, double factor);
    void makeThemes();

    QList<PlateView*> views;
    QAction* zoomIn;
    QAction* zoomOut;
    QAction* fit;
    QAction* fullScreen;
    QActionGroup themes;
};
