#include "load_case_box.h"

#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "field_help.h"
#include "growing_list.h"
#include "load_case_text.h"
#include "number_text.h"

namespace {

QString textOf(const Scene& scene, int loadCase, bool isUsed) {
    QString text = QObject::tr("Case %1").arg(numberedCase(scene, loadCase));
    if (const double weight = scene.weight(loadCase); weight != 1)
        text += QObject::tr(", weight %1").arg(placeText(weight));
    return isUsed ? text : text + QObject::tr(", not in use");
}

}  // namespace

LoadCaseBox::LoadCaseBox(Workbench& workbench) : QGroupBox(tr("Load cases")), bench(workbench) {
    auto* layout = new QVBoxLayout(this);
    makeList();
    layout->addWidget(list);
    layout->addLayout(makeFields());
    layout->addLayout(makeButtons());
    connect(&bench.document, &Document::sceneChanged, this, &LoadCaseBox::showScene);
    connect(&bench, &Workbench::loadCaseChanged, this, [this] {
        isShowing = true;
        list->setCurrentRow(bench.loadCase());
        isShowing = false;
        showFields();
    });
}

void LoadCaseBox::makeList() {
    list = new GrowingList;
    list->setAccessibleName(tr("Load cases; those that are ticked are in use"));
    explainField(
        *list, tr("Loads of one load case act at the same time; load cases take turns, such as "
                  "wind from the left and from the right. Tick the load cases to optimise for. "
                  "New loads belong to the selected one. Numbers start at 0, as in scene files."));
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!isShowing && row >= 0) bench.setLoadCase(row);
    });
    connect(list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        if (isShowing) return;
        const int row = list->row(item);
        const bool isUsed = item->checkState() == Qt::Checked;
        if (!bench.edit(isUsed ? tr("Use load case") : tr("Leave out load case"),
                        [=](Scene& scene) { useLoadCase(scene, row, isUsed); }))
            showScene();
    });
}

QLayout* LoadCaseBox::makeFields() {
    name = new QLineEdit;
    name->setMaxLength(static_cast<int>(Scene::MAX_LOAD_CASE_NAME));
    name->setAccessibleName(tr("Name of the load case"));
    weight = new QDoubleSpinBox;
    weight->setRange(Scene::MIN_WEIGHT, Scene::MAX_WEIGHT);
    weight->setDecimals(3);
    weight->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    weight->setKeyboardTracking(false);
    weight->setAccessibleName(tr("Weight of the load case"));
    explainField(*name, tr("The name of the selected load case, such as \"wind\""));
    explainField(*weight,
                 tr("How much the selected load case counts. The optimiser minimises the sum of "
                    "the compliances, each times its weight."));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Name")));
    row->addWidget(name, 1);
    row->addWidget(new QLabel(tr("Weight")));
    row->addWidget(weight);
    connect(name, &QLineEdit::editingFinished, this, [this] {
        if (!name->isModified()) return;
        const std::string text = name->text().simplified().toStdString();
        bench.editWhole(tr("Name load case"), [&](Scene& scene) {
            scene.loadCases[static_cast<std::size_t>(bench.loadCase())].name = text;
        });
        showFields();
    });
    connect(weight, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        if (isShowing) return;
        bench.editWhole(tr("Weigh load case"), [=, this](Scene& scene) {
            scene.loadCases[static_cast<std::size_t>(bench.loadCase())].weight = value;
        });
    });
    return row;
}

QLayout* LoadCaseBox::makeButtons() {
    auto* add = new QPushButton(tr("Add &case"));
    remove = new QPushButton(tr("Delete case"));
    remove->setToolTip(tr("Delete the selected load case with its loads"));
    connect(add, &QPushButton::clicked, this, [this] {
        if (bench.editWhole(tr("Add load case"), addLoadCase))
            bench.setLoadCase(bench.document.scene().loadCaseCount() - 1);
    });
    connect(remove, &QPushButton::clicked, this, [this] {
        const int row = list->currentRow();
        const auto before = bench.document.scene().loads.size();
        if (bench.editWhole(tr("Delete load case"),
                            [=](Scene& scene) { removeLoadCase(scene, row); }))
            emit bench.told(tr("Deleted with %n load(s); undo brings them back", nullptr,
                               static_cast<int>(before - bench.document.scene().loads.size())));
    });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(remove);
    return buttons;
}

void LoadCaseBox::showScene() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    while (list->count() > scene.loadCaseCount()) delete list->takeItem(list->count() - 1);
    while (list->count() < scene.loadCaseCount()) list->addItem(QString());
    const auto& used = scene.loadCasesInUse;
    for (int row = 0; row < list->count(); ++row) {
        const bool isUsed = std::find(used.begin(), used.end(), row) != used.end();
        list->item(row)->setText(textOf(scene, row, isUsed));
        list->item(row)->setCheckState(isUsed ? Qt::Checked : Qt::Unchecked);
    }
    list->setCurrentRow(bench.loadCase());
    remove->setEnabled(scene.loadCaseCount() > 1);
    isShowing = false;
    showFields();
}

void LoadCaseBox::showFields() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    // While one is being deleted, the workbench may still know it.
    const int selected = std::min(bench.loadCase(), scene.loadCaseCount() - 1);
    const LoadCase& shown = scene.loadCases[static_cast<std::size_t>(selected)];
    // Setting a text moves the cursor in it.
    if (const auto text = QString::fromStdString(shown.name); name->text() != text)
        name->setText(text);
    name->setModified(false);
    weight->setValue(shown.weight);
    // The weight of a single load case changes no design.
    weight->setEnabled(scene.loadCaseCount() > 1 || shown.weight != 1);
    isShowing = false;
}
