#include "piece_actions.h"

#include <array>
#include <utility>

#include "action_text.h"
#include "drawing/load_arrows.h"
#include "load_case_text.h"

using namespace voxam;

PieceActions::PieceActions(Workbench& workbench, PlateView& plateView)
    : bench(workbench), view(plateView), finder({workbench, plateView.transform()}) {
    cut = add(tr("Cu&t"), QKeySequence::Cut, tr("Take away what is selected, to paste it"),
              [this] { bench.cutSelected(); });
    copy = add(tr("&Copy"), QKeySequence::Copy, tr("Copy what is selected"),
               [this] { bench.copySelected(); });
    paste = add(tr("&Paste"), QKeySequence::Paste,
                tr("Put what was copied under the hand; Alt with a drag copies as well"),
                [this] { bench.paste(view.handPlace()); });
    remove =
        add(tr("D&elete"), QKeySequence::Delete, tr("Delete the selected load, support or area"),
            [this] { bench.deleteSelected(); });
    const auto addMirror = [this](const QString& name, const char* key, bool isLeftRight,
                                  bool copies) {
        mirrors.push_back(add(name, QKeySequence(key),
                              tr("Of what is selected, at the middle of the plate"),
                              [=, this] { bench.mirrorSelected(isLeftRight, copies); }));
    };
    addMirror(tr("Mirrored copy, &left and right"), "Ctrl+M", true, true);
    addMirror(tr("Mirrored copy, top and &bottom"), "Ctrl+Shift+M", false, true);
    addMirror(tr("Mirror left and &right"), "Ctrl+Alt+M", true, false);
    addMirror(tr("&Mirror top and bottom"), "Ctrl+Alt+Shift+M", false, false);
    connect(&bench, &Workbench::selectionChanged, this, &PieceActions::follow);
    connect(&bench, &Workbench::copiedChanged, this, &PieceActions::follow);
    follow();
}

QAction* PieceActions::add(const QString& name, const QKeySequence& key, const QString& explanation,
                           const std::function<void()>& act) {
    auto* action = new QAction(name, this);
    action->setShortcut(key);
    explain(*action, explanation);
    connect(action, &QAction::triggered, this, act);
    return action;
}

QList<QAction*> PieceActions::actions() const {
    QList<QAction*> all = {cut, copy, paste, remove};
    for (QAction* mirror : mirrors) all.append(mirror);
    return all;
}

void PieceActions::setEnabled(bool isToBe) {
    isEnabled = isToBe;
    follow();
}

void PieceActions::follow() {
    for (QAction* action : actions())
        action->setEnabled(isEnabled &&
                           (action == paste ? bench.hasCopy() : !bench.selectedPieces().empty()));
}

QMenu* PieceActions::makeMenu(const Hand& hand, const QList<QAction*>& ofPlate) {
    auto* menu = new QMenu(&view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto piece = finder.pieceAt(hand);
    const bool isOneOfSeveral = piece && bench.isSelected(*piece) && !bench.selection();
    if (!isOneOfSeveral) bench.select(piece);
    if (isOneOfSeveral) {
        fillForSelection(*menu);
    } else if (piece) {
        fillForPiece(*menu, *piece);
        menu->addSeparator();
        menu->addAction(tr("&Numbers..."), this, &PieceActions::numbersAsked);
    } else {
        fillForPlate(*menu, hand);
        menu->addSeparator();
        menu->addActions(ofPlate);
    }
    return menu;
}

void PieceActions::fillForPiece(QMenu& menu, const PieceId& id) {
    const Piece piece = pieceOf(bench.document.scene(), id);
    if (const auto* load = std::get_if<Load>(&piece)) fillForLoad(menu, *load);
    if (const auto* support = std::get_if<Support>(&piece)) fillForSupport(menu, *support);
    if (const auto* kept = std::get_if<KeptArea>(&piece)) fillForArea(menu, *kept);
    menu.addSeparator();
    fillForSelection(menu);
}

void PieceActions::fillForSelection(QMenu& menu) {
    menu.addActions({cut, copy, remove});
    menu.addSeparator();
    for (QAction* mirror : mirrors) menu.addAction(mirror);
}

void PieceActions::fillForLoad(QMenu& menu, const Load& load) {
    const double force = forceOf(load) > 0 ? forceOf(load) : bench.forces().unit();
    const auto addForce = [&](const QString& name, double fx, double fy) {
        menu.addAction(name, this, [=, this] {
            bench.changeSelected(tr("Turn load"), [=](Piece& piece) {
                auto& turned = std::get<Load>(piece);
                turned.fx = fx;
                turned.fy = fy;
            });
        });
    };
    addForce(tr("Pull &up"), 0, -force);
    addForce(tr("Pull &down"), 0, force);
    addForce(tr("Pull to the le&ft"), -force, 0);
    addForce(tr("Pull to the ri&ght"), force, 0);
    addForce(tr("Re&verse"), load.fx == 0 ? 0 : -load.fx, load.fy == 0 ? 0 : -load.fy);
    const Scene& scene = bench.document.scene();
    if (scene.loadCaseCount() < 2) return;
    QMenu* choice = menu.addMenu(tr("Load c&ase"));
    for (int each = 0; each < scene.loadCaseCount(); ++each) {
        const QString name = tr("Case %1").arg(numberedCase(scene, each)).replace('&', "&&");
        QAction* entry = choice->addAction(name, this, [=, this] {
            bench.changeSelected(tr("Change load case"),
                                 [=](Piece& piece) { std::get<Load>(piece).loadCase = each; });
        });
        entry->setCheckable(true);
        entry->setChecked(each == load.loadCase);
    }
}

void PieceActions::fillForSupport(QMenu& menu, const Support& support) {
    const auto addHold = [&](const QString& name, bool fixX, bool fixY) {
        QAction* entry = menu.addAction(name, this, [=, this] {
            bench.changeSelected(tr("Change support"), [=](Piece& piece) {
                auto& changed = std::get<Support>(piece);
                changed.fixX = fixX;
                changed.fixY = fixY;
            });
        });
        entry->setCheckable(true);
        entry->setChecked(support.fixX == fixX && support.fixY == fixY);
    };
    addHold(tr("Held in &both directions"), true, true);
    addHold(tr("Held in &x"), true, false);
    addHold(tr("Held in &y"), false, true);
}

void PieceActions::fillForArea(QMenu& menu, const KeptArea& kept) {
    const std::array<QString, 3> names = {tr("Keep &void"), tr("Keep &solid"),
                                          tr("Keep sec&ond solid")};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto kind = static_cast<PassiveKind>(i);
        QAction* entry = menu.addAction(names[i], this, [=, this] {
            bench.changeSelected(names[i],
                                 [=](Piece& piece) { std::get<KeptArea>(piece).kind = kind; });
        });
        entry->setCheckable(true);
        entry->setChecked(kept.kind == kind);
    }
}

void PieceActions::fillForPlate(QMenu& menu, const Hand& hand) {
    menu.addAction(paste);
    menu.addSeparator();
    const Node node = nearestNode(hand.plate, bench.document.scene());
    const Range x = {node.x, node.x};
    const Range y = {node.y, node.y};
    menu.addAction(tr("Add &load here"), this, [=, this] {
        bench.putIn(tr("Add load"), Load{x, y, 0, bench.forces().unit(), bench.loadCase()});
    });
    menu.addAction(tr("Add &support here"), this, [=, this] {
        bench.putIn(tr("Add support"), Support{x, y, true, true});
    });
}
