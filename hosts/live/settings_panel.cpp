#include "settings_panel.h"

#include <QApplication>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "checks/checks.h"
#include "field_help.h"
#include "format/detail.h"
#include "format/input_error.h"
#include "format/resize.h"
#include "number_text.h"
#include "problems.h"
#include "reflection.h"

using namespace voxam;

namespace {

constexpr int SLIDER_STEPS_PER_PERCENT = 2;
// On smaller plates most of the time is overhead, which does not grow with the plate.
constexpr double TELLING_ELEMENTS = 1000;

QSpinBox* makeCount(int most, const QString& name) {
    auto* box = new QSpinBox;
    box->setRange(1, most);
    box->setAccessibleName(name);
    return box;
}

/// Why the grid of `plate` is not possible for a scene; empty if it is.
QString faultOf(const Scene& plate, const Scene& scene) {
    try {
        checkDetail(scene, detailOf(plate));
    } catch (const InputError& fault) {
        return sentenceOf(fault);
    }
    const Findings findings = findTooLarge(plate);
    return findings.empty() ? QString() : sentenceOf(findings.front());
}

QString warningOf(const Scene& plate) {
    const Findings findings = findTooFine(plate);
    return findings.empty() ? QString() : sentenceOf(findings.front());
}

}  // namespace

SettingsPanel::SettingsPanel(Workbench& workbench, LiveRun& liveRun)
    : bench(workbench), run(liveRun) {
    auto* layout = new QVBoxLayout(this);
    auto* problem = new QGroupBox(tr("Design"));
    auto* form = new QFormLayout(problem);
    QWidget* volumeRow = makeVolume();
    form->addRow(tr("Vo&lume"), volumeRow);
    form->addRow(tr("&Penalty"), makePenalty());
    form->addRow(makeBlob());
    explainRow(*form, *volumeRow,
               tr("How much material the structure may have, in percent of the plate. Less "
                  "material makes a lighter and less stiff structure."));
    explainRow(*form, *penalty,
               tr("How strongly the optimiser avoids grey, which is neither material nor void. At "
                  "1 grey costs nothing; 3 gives nearly black and white designs."));
    explainField(*movesBlob,
                 tr("The blob is a hole of fixed size. If it moves, it drifts to where material is "
                    "least useful."));
    layout->addWidget(problem);
    layout->addWidget(makeGrid());
    layout->addStretch();
    connect(&bench.document, &Document::sceneChanged, this, &SettingsPanel::showScene);
}

QWidget* SettingsPanel::makeVolume() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    volumeSlider = new QSlider(Qt::Horizontal);
    volumeSlider->setRange(1 * SLIDER_STEPS_PER_PERCENT, 100 * SLIDER_STEPS_PER_PERCENT);
    volumeSlider->setAccessibleName(tr("Volume of material in percent"));
    volume = new QDoubleSpinBox;
    volume->setRange(100 * Scene::MIN_VOLUME_FRACTION, 100);
    volume->setCorrectionMode(QAbstractSpinBox::CorrectToNearestValue);
    volume->setDecimals(1);
    volume->setSuffix(" %");
    volume->setKeyboardTracking(false);
    volume->setAccessibleName(volumeSlider->accessibleName());
    row->setObjectName("volume");
    row->setFocusProxy(volumeSlider);
    layout->addWidget(volumeSlider, 1);
    layout->addWidget(volume);
    // One drag of the slider is one step of the history.
    connect(volumeSlider, &QSlider::sliderPressed, this,
            [this] { sliderGesture = bench.document.newGesture(); });
    connect(volumeSlider, &QSlider::sliderReleased, this,
            [this] { sliderGesture = Document::NO_GESTURE; });
    connect(volumeSlider, &QSlider::valueChanged, this,
            [this](int value) { setVolume(1.0 * value / SLIDER_STEPS_PER_PERCENT); });
    connect(volume, &QDoubleSpinBox::valueChanged, this, &SettingsPanel::setVolume);
    return row;
}

QWidget* SettingsPanel::makePenalty() {
    penalty = new QDoubleSpinBox;
    penalty->setRange(1, Scene::MAX_PENALTY);
    penalty->setSingleStep(0.25);
    penalty->setDecimals(2);
    penalty->setKeyboardTracking(false);
    penalty->setAccessibleName(tr("Penalty"));
    connect(penalty, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        if (!isShowing)
            bench.edit(tr("Change penalty"), [=](Scene& scene) { scene.penalty = value; });
    });
    return penalty;
}

QWidget* SettingsPanel::makeBlob() {
    movesBlob = new QCheckBox(tr("&Blob moves"));
    connect(movesBlob, &QCheckBox::toggled, &run, &LiveRun::setMovesBlob);
    return movesBlob;
}

QWidget* SettingsPanel::makeGrid() {
    auto* group = new QGroupBox(tr("Grid"));
    gridFields = group;
    auto* form = new QFormLayout(group);
    width = makeCount(Scene::MAX_SIDE, tr("Elements in x"));
    height = makeCount(Scene::MAX_SIDE, tr("Elements in y"));
    subdivision = makeCount(Scene::MAX_REFINEMENT, tr("Detail of the design"));
    meshFactor = makeCount(Scene::MAX_REFINEMENT, tr("Detail of the picture"));
    gridAdvice = new QLabel;
    gridAdvice->setWordWrap(true);
    gridButton = new QPushButton(tr("Apply and start &afresh"));
    explainField(*gridButton, tr("Gives the plate the grid and the details of this group. The "
                                 "design then forms anew, from an even grey."));
    // Above its fields, so that it is in sight where the panel is low.
    form->addRow(gridButton);
    // In one row: the panel is to fit into a low window.
    auto* sides = new QHBoxLayout;
    auto* heightLabel = new QLabel(tr("Hei&ght"));
    heightLabel->setBuddy(height);
    auto* widthLabel = new QLabel(tr("&Width"));
    widthLabel->setBuddy(width);
    sides->addWidget(widthLabel);
    sides->addWidget(width, 1);
    sides->addWidget(heightLabel);
    sides->addWidget(height, 1);
    form->addRow(sides);
    form->addRow(tr("&Detail of the design"), subdivision);
    form->addRow(tr("Detail of the p&icture"), meshFactor);
    plateSize = new QLabel;
    plateSize->setWordWrap(true);
    form->addRow(plateSize);
    // Below the fields, which stay where they are when it appears.
    form->addRow(gridAdvice);
    explainRow(*form, *width,
               tr("Elements from left to right. More elements show finer bars, and each iteration "
                  "takes longer."));
    explainRow(*form, *height, tr("Elements from top to bottom."));
    explainRow(*form, *subdivision,
               tr("Cells of the design per edge of an element. At 2 each element has four cells "
                  "that may be solid or void."));
    explainRow(*form, *meshFactor,
               tr("Cells of the picture per edge of a cell of the design. More of them make edges "
                  "smoother and do not change the structure. The compliance as drawn changes a "
                  "little, because it is computed from the picture."));
    for (QSpinBox* box : {width, height, subdivision, meshFactor}) {
        connect(box, &QSpinBox::valueChanged, this, &SettingsPanel::judgeGrid);
        box->installEventFilter(this);
    }
    gridButton->installEventFilter(this);
    connect(gridButton, &QPushButton::clicked, this, &SettingsPanel::applyGrid);
    return group;
}

void SettingsPanel::showScene() {
    isShowing = true;
    const Scene& scene = bench.document.scene();
    const double percent = 100 * scene.volumeFraction;
    volumeSlider->setValue(static_cast<int>(std::lround(percent * SLIDER_STEPS_PER_PERCENT)));
    volume->setValue(percent);
    penalty->setValue(scene.penalty);
    // Numbers that were typed and not applied yet outlast other edits.
    if (!hasSamePlate(scene, shown)) showGrid();
    movesBlob->setEnabled(!scene.blob.empty());
    isShowing = false;
    judgeGrid();
}

void SettingsPanel::showGrid() {
    const Scene& scene = bench.document.scene();
    shown = scene;
    width->setValue(scene.width);
    height->setValue(scene.height);
    subdivision->setValue(scene.subdivision);
    meshFactor->setValue(scene.meshFactor);
}

bool SettingsPanel::eventFilter(QObject* field, QEvent* event) {
    // Numbers that were not applied would look as if they were.
    if (leavesGrid(*event)) showGrid();
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(field, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape) {
        showGrid();
        return true;
    }
    auto* const box = qobject_cast<QSpinBox*>(field);
    if (box == nullptr || (key != Qt::Key_Return && key != Qt::Key_Enter))
        return QWidget::eventFilter(field, event);
    box->interpretText();
    gridButton->click();
    return true;
}

// A window that only loses the keyboard to another one, or to a menu, keeps what was typed.
bool SettingsPanel::leavesGrid(const QEvent& event) const {
    if (event.type() != QEvent::FocusOut || isShowing) return false;
    const auto reason = static_cast<const QFocusEvent&>(event).reason();
    const QWidget* const now = QApplication::focusWidget();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
           now != nullptr && !gridFields->isAncestorOf(now);
}

void SettingsPanel::setVolume(double percent) {
    if (isShowing) return;
    bench.edit(
        tr("Change volume"), [=](Scene& scene) { scene.volumeFraction = percent / 100; },
        sliderGesture);
}

void SettingsPanel::judgeGrid() {
    const Scene& scene = bench.document.scene();
    Scene plate;
    plate.width = width->value();
    plate.height = height->value();
    plate.subdivision = subdivision->value();
    plate.meshFactor = meshFactor->value();
    plate.loadCases = scene.loadCases;
    plate.volumeFraction = scene.volumeFraction;
    plate.symmetry = scene.symmetry;
    showPlateSize(plate);
    const QString fault = faultOf(plate, *bench.document.whole());
    gridAdvice->setText(!fault.isEmpty()
                            ? fault
                            : QStringList({warningOf(plate), speedOf(plate)}).join(" ").trimmed());
    gridAdvice->setVisible(!gridAdvice->text().isEmpty());
    const bool isOther = width->value() != scene.width || height->value() != scene.height ||
                         subdivision->value() != scene.subdivision ||
                         meshFactor->value() != scene.meshFactor;
    gridButton->setEnabled(fault.isEmpty() && isOther);
    QPalette colours = palette();
    if (gridButton->isEnabled()) {
        colours.setColor(QPalette::Button, colours.color(QPalette::Highlight));
        colours.setColor(QPalette::ButtonText, colours.color(QPalette::HighlightedText));
    }
    gridButton->setPalette(colours);
}

// Both depend on whether the plate keeps its shape.
void SettingsPanel::showPlateSize(const Scene& plate) {
    const double element = resizedElementSize(bench.document.scene(), plate.width, plate.height);
    const QSizeF size = element * wholePlateOf(plate).size;
    plateSize->setText(
        tr("Plate %1 × %2 mm, elements of %3 mm")
            .arg(placeText(size.width()), placeText(size.height()), placeText(element)));
}

// From the present time of an iteration. Solving takes most of it, and grows a little faster than
// the number of elements.
QString SettingsPanel::speedOf(const Scene& plate) const {
    constexpr double growth = 1.2;
    constexpr double worthAWord = 1;  // seconds
    constexpr double milliseconds = 1000;
    const IterationNumbers& numbers = run.frame().numbers;
    if (numbers.iteration == 0) return {};
    const Scene& scene = bench.document.scene();
    const auto cells = [](const Scene& each) {
        return 1.0 * each.width * each.height * each.subdivision * each.subdivision;
    };
    const auto elements = [](const Scene& each) { return 1.0 * each.width * each.height; };
    if (elements(scene) < TELLING_ELEMENTS) return {};
    const double factor =
        std::max(cells(plate) / cells(scene), std::pow(elements(plate) / elements(scene), growth));
    const double seconds = factor * static_cast<double>(numbers.times.totalTime) / milliseconds;
    if (seconds < worthAWord) return {};
    return tr("An iteration will take about %1 seconds.").arg(numberText(seconds, 1));
}

void SettingsPanel::applyGrid() {
    // The values of the boxes, which the edit itself will set.
    const int columns = width->value();
    const int rows = height->value();
    const int design = subdivision->value();
    const int picture = meshFactor->value();
    const auto showing = connect(&bench, &Workbench::refused, this, [this](const QString& reason) {
        gridAdvice->setText(reason);
        gridAdvice->show();
    });
    const bool isApplied = bench.editWhole(tr("Change grid"), [=, this](Scene& scene) {
        const bool isByHand = bench.document.byHand.isKnown(scene);
        if (columns != scene.width || rows != scene.height) resizeGrid(scene, columns, rows);
        if (isByHand) bench.document.byHand.add(scene);
        scene.subdivision = design;
        scene.meshFactor = picture;
    });
    disconnect(showing);
    if (isApplied) emit gridApplied();
}
