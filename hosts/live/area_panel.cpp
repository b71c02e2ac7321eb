#include "area_panel.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "growing_list.h"
#include "piece_hand.h"

namespace {

constexpr double NEW_SHARE = 0.2;  // of the plate's shorter side, for a new area
constexpr double MOST_RADIUS = 2;  // of the plate's longest side, for a radius

// The order of the entries for supports.
Support withHold(Support support, int entry) {
    support.fixX = entry != 2;
    support.fixY = entry != 1;
    return support;
}

int entryOf(const Support& support) {
    return support.fixX && support.fixY ? 0 : support.fixX ? 1 : 2;
}

}  // namespace

AreaPanel::AreaPanel(Workbench& workbench) : bench(workbench), list(new GrowingList) {
    auto* layout = new QVBoxLayout(this);
    auto* group = new QGroupBox(tr("Supports and areas"));
    auto* column = new QVBoxLayout(group);
    list->setAccessibleName(tr("Supports and areas"));
    list->setWhatsThis(
        tr("Where the plate is held, and the areas that stay void or solid whatever "
           "the optimiser does. Select one to change its numbers below."));
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!isShowing && row >= 0) bench.select(ids[static_cast<std::size_t>(row)]);
    });
    column->addWidget(list);
    auto* buttons = new QHBoxLayout;
    const auto addButton = [&](const QString& text, bool isDisc) {
        auto* button = new QPushButton(text);
        button->setToolTip(tr("Add an area that is kept void, to be given numbers below"));
        connect(button, &QPushButton::clicked, this, [=, this] { addArea(text, isDisc); });
        buttons->addWidget(button);
    };
    addButton(tr("Add rectangle"), false);
    addButton(tr("Add disc"), true);
    column->addLayout(buttons);
    several = new QLabel;
    several->setWordWrap(true);
    column->addWidget(several);
    makeFields();
    column->addWidget(fields);
    layout->addWidget(group);
    layout->addStretch();
    connect(&bench.document, &Document::sceneChanged, this, &AreaPanel::showScene);
    connect(&bench, &Workbench::selectionChanged, this, &AreaPanel::showSelection);
}

void AreaPanel::makeFields() {
    fields = new QWidget;
    form = new QFormLayout(fields);
    form->setContentsMargins(0, 0, 0, 0);
    kind = new QComboBox;
    kind->addItems({tr("void"), tr("solid"), tr("second solid")});
    kind->setAccessibleName(tr("What is kept"));
    hold = new QComboBox;
    hold->addItems({tr("x and y"), tr("x"), tr("y")});
    hold->setAccessibleName(tr("Directions that are held"));
    form->addRow(tr("Keep"), kind);
    form->addRow(tr("Hold in"), hold);
    x = addCount(tr("From x"), tr("First column"));
    y = addCount(tr("From y"), tr("First row"));
    width = addCount(tr("Columns"), tr("Number of columns"));
    height = addCount(tr("Rows"), tr("Number of rows"));
    centreX = addLength(tr("Centre x"), tr("Centre in x"));
    centreY = addLength(tr("Centre y"), tr("Centre in y"));
    radius = addLength(tr("Radius"), tr("Radius"));
    hole = addLength(tr("Hole's radius"), tr("Radius of the hole in the disc"));
    connect(kind, &QComboBox::activated, this, &AreaPanel::apply);
    connect(hold, &QComboBox::activated, this, &AreaPanel::apply);
    auto* remove = new QPushButton(tr("Delete"));
    remove->setAccessibleName(tr("Delete the support or area"));
    connect(remove, &QPushButton::clicked, &bench, &Workbench::deleteSelected);
    form->addRow(remove);
}

QSpinBox* AreaPanel::addCount(const QString& label, const QString& name) {
    auto* box = new QSpinBox;
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    box->setRange(0, Scene::MAX_SIDE + 1);
    connect(box, &QSpinBox::valueChanged, this, &AreaPanel::apply);
    form->addRow(label, box);
    return box;
}

QDoubleSpinBox* AreaPanel::addLength(const QString& label, const QString& name) {
    auto* box = new QDoubleSpinBox;
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    box->setDecimals(2);
    box->setSingleStep(0.5);
    connect(box, &QDoubleSpinBox::valueChanged, this, &AreaPanel::apply);
    form->addRow(label, box);
    return box;
}

void AreaPanel::addArea(const QString& what, bool isDisc) {
    const Scene& scene = bench.document.scene();
    const double size = std::max(1.0, std::round(NEW_SHARE * std::min(scene.width, scene.height)));
    const int half = static_cast<int>(size) / 2;
    const Range columns = {scene.width / 2 - half, scene.width / 2 + half};
    const Range rows = {scene.height / 2 - half, scene.height / 2 + half};
    const Ring disc = {0.5 * scene.width, 0.5 * scene.height, 0, size};
    bench.putIn(what, KeptArea{PassiveKind::VOID, isDisc ? ringArea(disc, scene)
                                                         : rectangleArea({columns, rows}, scene)});
}

void AreaPanel::showEvent(QShowEvent*) { showScene(); }

void AreaPanel::showScene() {
    // The walk over the areas is for nothing where nobody sees it.
    if (!isVisible()) return;
    showList();
    showSelection();
}

void AreaPanel::showList() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    ids = piecesOf(scene);
    std::erase_if(ids, [](const PieceId& id) { return id.type == PieceId::Type::LOAD; });
    const auto count = static_cast<int>(ids.size());
    while (list->count() > count) delete list->takeItem(list->count() - 1);
    while (list->count() < count) list->addItem(QString());
    for (int row = 0; row < count; ++row)
        list->item(row)->setText(describePiece(scene, ids[static_cast<std::size_t>(row)]));
    isShowing = false;
}

void AreaPanel::showSelection() {
    if (!isVisible()) return;
    isShowing = true;
    const auto count = static_cast<int>(bench.selectedPieces().size());
    several->setText(tr("%n piece(s) selected. Select one to see its numbers.", nullptr, count));
    several->setVisible(count > 1);
    const auto selected = bench.selection();
    const auto found = selected ? std::find(ids.begin(), ids.end(), *selected) : ids.end();
    const bool isHere = found != ids.end() && exists(bench.document.scene(), *selected);
    list->setCurrentRow(isHere ? static_cast<int>(found - ids.begin()) : -1);
    if (isHere)
        showPiece(pieceOf(bench.document.scene(), *selected));
    else
        showFields(Form::NONE);
    isShowing = false;
}

void AreaPanel::showPiece(const Piece& piece) {
    const Scene& scene = bench.document.scene();
    const Extent extent = extentOf(piece);
    Form next = Form::SUPPORT;
    if (const auto* support = std::get_if<Support>(&piece))
        hold->setCurrentIndex(entryOf(*support));
    if (const auto* kept = std::get_if<KeptArea>(&piece)) {
        kind->setCurrentIndex(static_cast<int>(kept->kind));
        next = isRectangle(kept->area) ? Form::RECTANGLE : Form::FREE;
        if (const auto ring = ringOf(kept->area, scene)) {
            next = Form::DISC;
            const double most = MOST_RADIUS * std::max(scene.width, scene.height);
            centreX->setRange(0, scene.width);
            centreY->setRange(0, scene.height);
            radius->setRange(0.5, most);
            hole->setRange(0, std::max(0.0, ring->outer - 0.5));
            centreX->setValue(ring->x);
            centreY->setValue(ring->y);
            radius->setValue(ring->outer);
            hole->setValue(ring->inner);
        }
    }
    const int nodes = next == Form::SUPPORT ? 1 : 0;
    x->setRange(0, scene.width + nodes - extent.x.count());
    y->setRange(0, scene.height + nodes - extent.y.count());
    width->setRange(1, scene.width + nodes - extent.x.from);
    height->setRange(1, scene.height + nodes - extent.y.from);
    x->setValue(extent.x.from);
    y->setValue(extent.y.from);
    width->setValue(extent.x.count());
    height->setValue(extent.y.count());
    showFields(next);
}

void AreaPanel::showFields(Form next) {
    shown = next;
    fields->setEnabled(next != Form::NONE);
    const bool isDisc = next == Form::DISC;
    form->setRowVisible(kind, next != Form::SUPPORT);
    form->setRowVisible(hold, next == Form::SUPPORT);
    for (QSpinBox* box : {x, y, width, height}) form->setRowVisible(box, !isDisc);
    for (QDoubleSpinBox* box : {centreX, centreY, radius, hole}) form->setRowVisible(box, isDisc);
    for (QSpinBox* box : {width, height}) box->setEnabled(next != Form::FREE);
}

void AreaPanel::apply() {
    if (isShowing || shown == Form::NONE) return;
    const Scene& scene = bench.document.scene();
    const Extent extent = {{x->value(), x->value() + width->value() - 1},
                           {y->value(), y->value() + height->value() - 1}};
    bench.changeSelected(tr("Change numbers"), [&](Piece& piece) {
        if (auto* support = std::get_if<Support>(&piece)) {
            *support = withHold({extent.x, extent.y, true, true}, hold->currentIndex());
            return;
        }
        auto& kept = std::get<KeptArea>(piece);
        kept.kind = static_cast<PassiveKind>(kind->currentIndex());
        const Extent before = extentOf(piece);
        if (shown == Form::RECTANGLE) kept.area = rectangleArea(extent, scene);
        if (shown == Form::DISC)
            kept.area = ringArea({centreX->value(), centreY->value(),
                                  std::min(hole->value(), radius->value() - 0.5), radius->value()},
                                 scene);
        if (shown == Form::FREE)
            piece = moved(piece, x->value() - before.x.from, y->value() - before.y.from, scene);
    });
    // A refused value must not stay in the fields.
    showSelection();
}
