#include "scene_panel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include "field_help.h"
#include "format/symmetry.h"
#include "number_text.h"
#include "reflection.h"

using namespace voxam;

namespace {

constexpr int LEAST_FIELD_WIDTH = 90;  // pixels

/// A long text from its first word on.
void showStart(QLineEdit& field, const QString& text) {
    // Setting a text moves the cursor in it.
    if (field.text() == text) return;
    field.setText(text);
    field.setCursorPosition(0);
}

/// The support on the plane of symmetry of a scene.
Support planeSupport(const Scene& scene) {
    const QLineF plane = planeOf(scene, PlateTransform());
    const auto range = [](double from, double to) {
        return Range{static_cast<int>(from), static_cast<int>(to)};
    };
    const bool upright = isUpright(scene.symmetry);
    return {range(plane.x1(), plane.x2()), range(plane.y1(), plane.y2()), upright, !upright};
}

}  // namespace

ScenePanel::ScenePanel(Workbench& workbench) : bench(workbench) {
    new QVBoxLayout(this);
    makeTexts();
    makeSizes();
    static_cast<QVBoxLayout*>(layout())->addStretch();
    connect(&bench.document, &Document::sceneChanged, this, &ScenePanel::showScene);
}

void ScenePanel::makeTexts() {
    auto* group = new QGroupBox(tr("Texts"));
    auto* form = new QFormLayout(group);
    title = new QLineEdit;
    title->setAccessibleName(tr("Title of the scene"));
    description = new QLineEdit;
    description->setAccessibleName(tr("Description of the scene"));
    form->addRow(tr("Title"), title);
    form->addRow(tr("Description"), description);
    explainRow(*form, *title,
               tr("It is drawn above exported pictures. This is the text of the file, in its own "
                  "language."));
    explainRow(*form, *description,
               tr("What the scene is about. It is shown above the plate. This is the text of the "
                  "file, in its own language."));
    connect(title, &QLineEdit::editingFinished, this, [this] {
        if (!title->isModified()) return;
        const std::string text = title->text().simplified().toStdString();
        bench.editWhole(tr("Change title"), [&](Scene& scene) { scene.title = text; });
    });
    connect(description, &QLineEdit::editingFinished, this, [this] {
        if (!description->isModified()) return;
        const std::string text = description->text().toStdString();
        bench.editWhole(tr("Change description"), [&](Scene& scene) { scene.description = text; });
    });
    layout()->addWidget(group);
}

void ScenePanel::makeSizes() {
    auto* group = new QGroupBox(tr("Plate"));
    auto* form = new QFormLayout(group);
    elementSize = new QDoubleSpinBox;
    elementSize->setDecimals(LENGTH_DECIMALS);
    elementSize->setRange(Scene::MIN_ELEMENT_SIZE, Scene::MAX_ELEMENT_SIZE);
    elementSize->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    // Few sizes have all the digits that are possible.
    elementSize->setMinimumWidth(LEAST_FIELD_WIDTH);
    elementSize->setSuffix(tr(" mm"));
    elementSize->setKeyboardTracking(false);
    elementSize->setAccessibleName(tr("Edge of an element in millimetres"));
    plateSize = new QLabel;
    plateSize->setObjectName("plateSize");
    symmetry = new QComboBox;
    symmetry->addItems({tr("none"), tr("at the left edge"), tr("at the right edge"),
                        tr("at the top edge"), tr("at the bottom edge")});
    symmetry->setAccessibleName(tr("Plane of symmetry"));
    form->addRow(tr("Element"), elementSize);
    form->addRow(tr("Whole plate"), plateSize);
    form->addRow(tr("Symmetry"), symmetry);
    explainRow(
        *form, *elementSize,
        tr("Edge of an element in millimetres, for outlines, solids and stresses. It changes "
           "no compliance. Forces are in a unit of your choice, such as newtons."));
    explainRow(
        *form, *symmetry,
        tr("Edit and compute one half of a plate that is symmetric to one of its edges. The "
           "nodes of that edge are held. Pictures and exports show the whole plate. Of a force on "
           "the plane of symmetry give one half."));
    connect(elementSize, &QDoubleSpinBox::valueChanged, this, [this](double size) {
        if (!isShowing)
            bench.editWhole(tr("Change element size"),
                            [=](Scene& scene) { scene.elementSize = size; });
    });
    connect(symmetry, &QComboBox::activated, this,
            [this](int entry) { setSymmetry(static_cast<Symmetry>(entry)); });
    layout()->addWidget(group);
}

void ScenePanel::setSymmetry(Symmetry next) {
    bench.editWhole(tr("Change symmetry"), [=](Scene& scene) {
        if (scene.symmetry == next) return;
        std::erase_if(scene.supports,
                      [&](const Support& each) { return standsForPlane(each, scene); });
        scene.symmetry = next;
        if (next != Symmetry::NONE) scene.supports.push_back(planeSupport(scene));
    });
    showScene();
}

void ScenePanel::showScene() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    showStart(*title, QString::fromStdString(scene.title));
    const QString words = QString::fromStdString(scene.description);
    showStart(*description, words);
    elementSize->setValue(scene.elementSize);
    const QSizeF size = scene.elementSize * wholePlateOf(scene).size;
    plateSize->setText(tr("%1 × %2 mm").arg(placeText(size.width()), placeText(size.height())));
    symmetry->setCurrentIndex(static_cast<int>(scene.symmetry));
    isShowing = false;
}
