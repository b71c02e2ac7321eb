#include "field_bar.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <cmath>

#include "action_text.h"
#include "load_case_text.h"

namespace {

constexpr int FRAME = 40;          // ms
constexpr double PERIOD = 2400.0;  // ms, from rest to rest
constexpr int ALL = -1;            // load cases
constexpr int MOST_OF_NAME = 220;  // pixels, of a load case
constexpr const char* BUTTON_STYLE =
    "QToolButton { padding: 3px 8px; border: 1px solid palette(mid);"
    " color: palette(button-text); }"
    "QToolButton:checked { background: palette(highlight); color: palette(highlighted-text); }"
    "QToolButton:focus { border-color: palette(highlight); }";

}  // namespace

FieldBar::FieldBar(QWidget* parent)
    : QWidget(parent),
      views(this),
      animate(new QAction(tr("A&nimate the deformation"), this)),
      animateButton(new QToolButton),
      cases(new QComboBox),
      scale(new FieldLegend) {
    makeViews();
    animate->setCheckable(true);
    animate->setIconText(tr("Animate"));
    explain(*animate, tr("Let the plate move between rest and its deformed shape"));
    connect(animate, &QAction::toggled, this, &FieldBar::setAnimated);
    animateButton->setDefaultAction(animate);
    clock.setInterval(FRAME);
    connect(&clock, &QTimer::timeout, this, &FieldBar::advance);
    cases->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    cases->setMaximumWidth(MOST_OF_NAME);
    cases->setAccessibleName(tr("Load case"));
    cases->setToolTip(tr("Load case that is shown"));
    connect(cases, &QComboBox::currentIndexChanged, this, [this] {
        const int loadCase = cases->currentData().toInt();
        choose({choice().view, loadCase == ALL ? std::nullopt : std::optional(loadCase)});
    });

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    for (QAction* action : views.actions()) {
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        button->setFocusPolicy(Qt::TabFocus);
        // In a dark window the style hardly shows which one is checked.
        button->setStyleSheet(BUTTON_STYLE);
        viewButtons.append(button);
        buttons->addWidget(button);
    }
    auto* details = new QHBoxLayout;
    details->addWidget(cases);
    details->addWidget(animateButton);
    details->addStretch();
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(12, 4, 8, 0);
    layout->setVerticalSpacing(2);
    layout->addLayout(buttons, 0, 0);
    layout->addLayout(details, 1, 0);
    layout->addWidget(scale, 0, 1, 2, 1, Qt::AlignVCenter);
    layout->setColumnStretch(1, 1);
    // A button that comes or goes must not move the plate.
    for (const int row : {0, 1})
        layout->setRowMinimumHeight(
            row, std::max(cases->sizeHint().height(), animateButton->sizeHint().height()));
    refresh();
}

// A style sheet resolves the colours of the palette only when it is set.
void FieldBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    for (QToolButton* button : viewButtons) {
        button->setStyleSheet({});
        button->setStyleSheet(BUTTON_STYLE);
    }
}

void FieldBar::makeViews() {
    struct Entry {
        QString name;
        QString word;
        QString explanation;
    };
    const std::array<Entry, 4> entries = {{
        {tr("Show the &material"), tr("Material"), tr("The densities of the design")},
        {tr("Show the &energy"), tr("Energy"),
         tr("Which elements carry much: their share in the compliance")},
        {tr("Show the &stress"), tr("Stress"), tr("The von Mises stress of the elements")},
        {tr("Show the &deformed plate"), tr("Deformed"),
         tr("How the loads deform the design. The displacements are scaled so that you can see "
            "them; the legend shows the factor.")},
    }};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        QAction* action = views.addAction(entries[i].name);
        action->setCheckable(true);
        action->setIconText(entries[i].word);
        action->setShortcut(QKeySequence("Ctrl+" + QString::number(i + 1)));
        explain(*action, entries[i].explanation);
        connect(action, &QAction::triggered, this, [this, i] {
            choose({static_cast<View>(i), choice().loadCase});
        });
    }
}

void FieldBar::choose(const ViewChoice& next) {
    if (next == choice()) return;
    choices[isDrawing ? 1 : 0] = next;
    refresh();
    emit choiceChanged();
}

void FieldBar::setDrawing(bool draws) {
    if (std::exchange(isDrawing, draws) == draws) return;
    refresh();
    emit choiceChanged();
}

void FieldBar::setLoadCases(const Scene& scene) {
    const auto& inUse = scene.loadCasesInUse;
    std::vector<std::pair<int, QString>> named;
    for (const int each : inUse) named.emplace_back(each, numberedCase(scene, each));
    if (named == loadCases) return;
    loadCases = std::move(named);
    const ViewChoice before = choice();
    for (ViewChoice& each : choices)
        if (each.loadCase && std::find(inUse.begin(), inUse.end(), *each.loadCase) == inUse.end())
            each.loadCase.reset();
    refresh();
    if (choice() != before) emit choiceChanged();
}

void FieldBar::refresh() {
    const View view = choice().view;
    views.actions()[static_cast<int>(view)]->setChecked(true);
    const bool isDeformed = view == View::DEFORMED;
    animate->setEnabled(isDeformed);
    animateButton->setVisible(isDeformed);
    if (!isDeformed) animate->setChecked(false);
    const QSignalBlocker blocker(cases);
    cases->clear();
    // A deformed plate belongs to one load case.
    if (!isDeformed) cases->addItem(tr("All load cases"), ALL);
    for (const auto& [number, name] : loadCases)
        cases->addItem(tr("Load case %1").arg(name), number);
    cases->setCurrentIndex(std::max(0, cases->findData(choice().loadCase.value_or(ALL))));
    cases->setVisible(loadCases.size() > 1 && view != View::MATERIAL);
}

void FieldBar::setAnimated(bool isToBe) {
    if (isToBe) {
        sinceStart.start();
        clock.start();
    } else {
        clock.stop();
        emit animated(1);
    }
}

void FieldBar::advance() {
    const double turn = 2 * std::acos(-1.0) * static_cast<double>(sinceStart.elapsed()) / PERIOD;
    emit animated(0.5 * (1 - std::cos(turn)));
}

void FieldBar::hideEvent(QHideEvent* event) {
    animate->setChecked(false);
    QWidget::hideEvent(event);
}
