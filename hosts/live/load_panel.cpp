#include "load_panel.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "drawing/load_arrows.h"
#include "field_help.h"
#include "growing_list.h"
#include "load_case_box.h"
#include "load_case_text.h"
#include "number_text.h"

namespace {

constexpr int ROW_SPACING = 3;  // pixels

QString nameOfLoad(const Scene& scene, std::size_t index) {
    const Load& load = scene.loads[index];
    const auto range = [](const Range& nodes) {
        return nodes.count() == 1 ? QString::number(nodes.from)
                                  : QString("%1–%2").arg(nodes.from).arg(nodes.to);
    };
    const QString place = QObject::tr("%1:  node %2, %3;  force %4, %5")
                              .arg(index + 1)
                              .arg(range(load.x), range(load.y))
                              .arg(numberText(load.fx), numberText(load.fy));
    if (scene.loadCaseCount() == 1) return place;
    return place + QObject::tr(";  case %1").arg(numberedCase(scene, load.loadCase));
}

}  // namespace

LoadPanel::LoadPanel(Workbench& workbench) : bench(workbench) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new LoadCaseBox(bench));
    layout->addWidget(makeLoads());
    layout->addStretch();
    connect(&bench.document, &Document::sceneChanged, this, &LoadPanel::showScene);
    connect(&bench, &Workbench::selectionChanged, this, &LoadPanel::showSelection);
}

QDoubleSpinBox* LoadPanel::makeForce(const QString& name) {
    auto* box = new QDoubleSpinBox;
    box->setRange(-Scene::MAX_FORCE, Scene::MAX_FORCE);
    box->setDecimals(4);
    box->setSingleStep(0.1);
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    return box;
}

QWidget* LoadPanel::makeLoads() {
    auto* group = new QGroupBox(tr("Loads"));
    auto* layout = new QVBoxLayout(group);
    loads = new GrowingList;
    loads->setAccessibleName(tr("Loads"));
    connect(loads, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!isShowing && row >= 0) bench.select(static_cast<std::size_t>(row));
    });
    layout->addWidget(loads);
    several = new QLabel;
    several->setWordWrap(true);
    layout->addWidget(several);
    layout->addWidget(makeFields());
    connectFields();
    return group;
}

QWidget* LoadPanel::makeFields() {
    fields = new QWidget;
    auto* form = new QFormLayout(fields);
    form->setContentsMargins(0, 0, 0, 0);
    x = new QSpinBox;
    y = new QSpinBox;
    // A number that is being typed is no edit yet.
    x->setKeyboardTracking(false);
    y->setKeyboardTracking(false);
    x->setAccessibleName(tr("Node of the load in x"));
    y->setAccessibleName(tr("Node of the load in y"));
    fx = makeForce(tr("Force in x, to the right"));
    fy = makeForce(tr("Force in y, downwards"));
    loadCase = new QComboBox;
    loadCase->setAccessibleName(tr("Load case of the load"));
    // A long name must not widen the panel.
    loadCase->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    form->setVerticalSpacing(ROW_SPACING);
    auto* node = new QHBoxLayout;
    node->addWidget(x, 1);
    node->addWidget(new QLabel(tr("y")));
    node->addWidget(y, 1);
    form->addRow(tr("Node x"), node);
    form->addRow(tr("Force right"), fx);
    form->addRow(tr("Force down"), fy);
    magnitude = makeForce(tr("Magnitude of the force"));
    magnitude->setMinimum(0);
    angle = makeForce(tr("Angle of the force, from the right, counterclockwise"));
    angle->setRange(-180, 180);
    angle->setDecimals(2);
    angle->setSingleStep(5);
    angle->setWrapping(true);
    angle->setSuffix(tr("°"));
    form->addRow(tr("Magnitude"), magnitude);
    form->addRow(tr("Angle"), angle);
    auto* remove = new QPushButton(tr("Delete load"));
    auto* last = new QHBoxLayout;
    last->addWidget(loadCase, 1);
    last->addWidget(remove);
    form->addRow(tr("Load case"), last);
    connect(remove, &QPushButton::clicked, &bench, &Workbench::deleteSelected);
    explainRows(*form);
    return fields;
}

void LoadPanel::explainRows(const QFormLayout& form) {
    explainField(*x, tr("The column of nodes on which the load acts, or the first one"));
    explainField(*y, tr("The row of nodes on which the load acts, or the first one"));
    const QString force =
        tr("The force, in a unit of your choice. A load on several nodes is "
           "shared among them.");
    for (QDoubleSpinBox* part : {fx, fy, magnitude}) explainRow(form, *part, force);
    explainRow(form, *angle, tr("The direction of the force: 0° points right, 90° up"));
    explainField(*loadCase, tr("Loads of the same load case act at the same time"));
}

void LoadPanel::connectFields() {
    const auto move = [this] {
        changeSelected(tr("Move load"), [this](Scene& scene, Load&) {
            moveLoad(scene, *bench.selectedLoad(), {x->value(), y->value()});
        });
    };
    connect(x, &QSpinBox::valueChanged, this, move);
    connect(y, &QSpinBox::valueChanged, this, move);
    connect(fx, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        changeSelected(tr("Change force"), [=](Scene&, Load& load) { load.fx = value; });
    });
    connect(fy, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        changeSelected(tr("Change force"), [=](Scene&, Load& load) { load.fy = value; });
    });
    connect(magnitude, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        changeSelected(tr("Change force"), [=, this](Scene&, Load& load) {
            setForce(load, value, forceOf(load) > 0 ? std::atan2(load.fy, load.fx) : radians());
        });
    });
    connect(angle, &QDoubleSpinBox::valueChanged, this, [this] {
        changeSelected(tr("Turn load"),
                       [this](Scene&, Load& load) { setForce(load, forceOf(load), radians()); });
    });
    connect(loadCase, &QComboBox::currentIndexChanged, this, [this](int value) {
        if (value >= 0)
            changeSelected(tr("Change load case"),
                           [=](Scene&, Load& load) { load.loadCase = value; });
    });
}

void LoadPanel::changeSelected(const QString& what,
                               const std::function<void(Scene&, Load&)>& change) {
    if (isShowing || !bench.selectedLoad()) return;
    bench.edit(what, [&](Scene& scene) { change(scene, scene.loads[*bench.selectedLoad()]); });
}

// The field counts from the right and counterclockwise, where y points down.
double LoadPanel::radians() const { return -angle->value() * std::numbers::pi / 180; }

void LoadPanel::showScene() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    showLoads(scene);
    isShowing = false;
    showSelection();
}

void LoadPanel::showLoads(const Scene& scene) {
    const auto count = static_cast<int>(scene.loads.size());
    while (loads->count() > count) delete loads->takeItem(loads->count() - 1);
    while (loads->count() < count) loads->addItem(QString());
    for (int row = 0; row < count; ++row) {
        const auto index = static_cast<std::size_t>(row);
        const QString name = nameOfLoad(scene, index);
        if (loads->item(row)->text() != name) loads->item(row)->setText(name);
    }
}

void LoadPanel::showSelection() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    const auto count = static_cast<int>(bench.selectedPieces().size());
    several->setText(tr("%n piece(s) selected. Select one to see its numbers.", nullptr, count));
    several->setVisible(count > 1);
    const auto selected = bench.selectedLoad();
    const bool isSelected = selected && *selected < scene.loads.size();
    fields->setEnabled(isSelected);
    loads->setCurrentRow(isSelected ? static_cast<int>(*selected) : -1);
    if (isSelected) {
        const Load& load = scene.loads[*selected];
        x->setRange(0, scene.width - load.x.count() + 1);
        y->setRange(0, scene.height - load.y.count() + 1);
        x->setValue(load.x.from);
        y->setValue(load.y.from);
        fx->setValue(load.fx);
        fy->setValue(load.fy);
        magnitude->setValue(forceOf(load));
        // A load without a force keeps the angle that was shown last.
        if (forceOf(load) > 0)
            angle->setValue(std::atan2(0 - load.fy, load.fx) * 180 / std::numbers::pi);
        loadCase->clear();
        for (int each = 0; each < scene.loadCaseCount(); ++each)
            loadCase->addItem(numberedCase(scene, each));
        loadCase->setCurrentIndex(load.loadCase);
    } else {
        for (QSpinBox* box : {x, y}) box->setValue(box->minimum());
        for (QDoubleSpinBox* box : {fx, fy, magnitude, angle}) box->setValue(box->minimum());
        loadCase->setCurrentIndex(-1);
    }
    // Shown in the place of the least number: fields of no load are empty.
    const QString nothing = isSelected ? QString() : QString(" ");
    for (QAbstractSpinBox* box :
         std::initializer_list<QAbstractSpinBox*>{x, y, fx, fy, magnitude, angle})
        box->setSpecialValueText(nothing);
    isShowing = false;
}
