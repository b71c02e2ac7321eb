#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <vector>

#include "load_tools.h"
#include "plate_view.h"
#include "workbench.h"

/// The actions on pieces: entries of the window's menu, and the menu of the piece under the hand.
class PieceActions : public QObject {
    Q_OBJECT

public:
    PieceActions(Workbench& workbench, PlateView& plateView);

    QList<QAction*> actions() const;

    /// Disabled while the user draws a design.
    void setEnabled(bool isToBe);

    /// Selects the piece under the hand, unless it is one of several that are selected, and makes
    /// the menu of the selection. Without a piece, makes the menu of the
    /// plate, which ends in `ofPlate`. The menu deletes itself when it closes.
    QMenu* makeMenu(const Hand& hand, const QList<QAction*>& ofPlate);

signals:
    /// The user wants to see the selected piece in its panel.
    void numbersAsked();

private:
    QAction* add(const QString& name, const QKeySequence& key, const QString& explanation,
                 const std::function<void()>& act);
    void follow();
    void fillForPiece(QMenu& menu, const PieceId& id);
    void fillForSelection(QMenu& menu);
    void fillForLoad(QMenu& menu, const Load& load);
    void fillForSupport(QMenu& menu, const Support& support);
    void fillForArea(QMenu& menu, const KeptArea& kept);
    void fillForPlate(QMenu& menu, const Hand& hand);

    Workbench& bench;
    PlateView& view;
    SelectTool finder;
    bool isEnabled = true;
    QAction* cut;
    QAction* copy;
    QAction* paste;
    QAction* remove;
    std::vector<QAction*> mirrors;
};
