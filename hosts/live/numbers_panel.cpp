#include "numbers_panel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLocale>
#include <QTimer>
#include <QVBoxLayout>

#include "field_help.h"
#include "number_text.h"

namespace {

constexpr std::size_t AVERAGED = 30;   // iterations
constexpr int REFRESH_INTERVAL = 120;  // ms; digits that change faster cannot be read
constexpr qint64 FRAME_SPAN = 1000;    // ms

QLabel* addNumber(QFormLayout& form, const QString& name) {
    auto* label = new QLabel("–");
    label->setAlignment(Qt::AlignRight);
    // Not by keyboard: it would be a stop on the way of Tab that nobody sees.
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setObjectName(name);
    form.addRow(name, label);
    return label;
}

void tell(QLabel& label, const QString& value) {
    label.setText(value);
    label.setAccessibleName(label.objectName() + " " + value);
}

}  // namespace

const std::array<NumbersPanel::Part, 5>& NumbersPanel::parts() {
    static const std::array<Part, 5> all = {
        {{QT_TR_NOOP("Assembly"), &RuntimeStat::assembleTime},
         {QT_TR_NOOP("Factorisation"), &RuntimeStat::factorizeTime},
         {QT_TR_NOOP("Solution"), &RuntimeStat::solveTime},
         {QT_TR_NOOP("Sensitivities"), &RuntimeStat::sensitivityTime},
         {QT_TR_NOOP("Update and picture"), &RuntimeStat::updateTime}}};
    return all;
}

NumbersPanel::NumbersPanel(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->setVerticalSpacing(4);
    iteration = addNumber(*form, tr("Iteration"));
    compliance = addNumber(*form, tr("Compliance"));
    volume = addNumber(*form, tr("Volume"));
    change = addNumber(*form, tr("Change"));
    milliseconds = addNumber(*form, tr("One iteration"));
    frames = addNumber(*form, tr("Frames a second"));
    explainRow(*form, *iteration,
               tr("How many times the optimiser has improved the design since it started afresh."));
    explainRow(*form, *compliance,
               tr("How far the loads move the structure: force times displacement, summed over the "
                  "load cases. The smaller it is, the stiffer is the structure."));
    explainRow(*form, *volume,
               tr("Material of the design, in percent of the plate. It may differ a little from "
                  "the volume you asked for, because the picture is a smoothed copy of the "
                  "optimiser's densities."));
    explainRow(*form, *change,
               tr("The largest change of a density in the last iteration, from 0 to 1. A design "
                  "settles when its compliance hardly changes, although single cells may still "
                  "waver."));
    explainRow(*form, *milliseconds,
               tr("Time for one iteration, averaged over the last iterations."));
    explainRow(*form, *frames, tr("How often the picture of the design was replaced."));
    complianceName = qobject_cast<QLabel*>(form->labelForField(compliance));
    layout->addLayout(form);

    auto* times = new QGroupBox(tr("Where the time goes"));
    auto* timeForm = new QFormLayout(times);
    timeForm->setVerticalSpacing(3);
    for (const Part& part : parts()) {
        auto* bar = new QProgressBar;
        bar->setRange(0, 100);
        bar->setMaximumHeight(16);
        bar->setAccessibleName(tr(part.name));
        timeForm->addRow(tr(part.name), bar);
        bars.push_back(bar);
    }
    layout->addWidget(times);
    layout->addStretch();

    clock.start();
    timer.setInterval(REFRESH_INTERVAL);
    connect(&timer, &QTimer::timeout, this, &NumbersPanel::refresh);
}

void NumbersPanel::add(const std::vector<IterationNumbers>& numbers) {
    recent.insert(recent.end(), numbers.begin(), numbers.end());
    while (recent.size() > AVERAGED) recent.pop_front();
    if (!timer.isActive()) timer.start();
}

void NumbersPanel::setHalf(bool isHalf) {
    complianceName->setText(isHalf ? tr("Compliance of the half") : tr("Compliance"));
    compliance->setObjectName(complianceName->text());
}

void NumbersPanel::clear() {
    recent.clear();
    for (QLabel* label : {iteration, compliance, volume, change, milliseconds}) tell(*label, "–");
    for (QProgressBar* bar : bars) bar->setValue(0);
}

void NumbersPanel::countFrame() {
    frameTimes.push_back(clock.elapsed());
    if (!timer.isActive()) timer.start();
}

double NumbersPanel::framesPerSecond() {
    const qint64 now = clock.elapsed();
    while (!frameTimes.empty() && frameTimes.front() < now - FRAME_SPAN) frameTimes.pop_front();
    return static_cast<double>(frameTimes.size()) * 1000 / FRAME_SPAN;
}

void NumbersPanel::refresh() {
    const double rate = framesPerSecond();
    tell(*frames, QString::number(rate, 'f', 0));
    // A window at rest has no clock that ticks.
    if (rate == 0) timer.stop();
    if (recent.empty()) return;
    const IterationNumbers& last = recent.back();
    tell(*iteration, QString::number(last.iteration));
    tell(*compliance, numberText(last.compliance, 6));
    tell(*volume, percentText(last.volume));
    tell(*change, QLocale().toString(last.change, 'f', 4));
    refreshTimes();
}

void NumbersPanel::refreshTimes() {
    double total = 0;
    for (const auto& numbers : recent) total += static_cast<double>(numbers.times.totalTime);
    const double each = total / static_cast<double>(recent.size());
    tell(*milliseconds, tr("%1 ms").arg(QLocale().toString(each, 'f', each > 1000 ? 0 : 1)));
    if (total <= 0) return;
    double rest = total;
    for (std::size_t i = 0; i < bars.size(); ++i) {
        double time = 0;
        for (const auto& numbers : recent)
            time += static_cast<double>(numbers.times.*(parts()[i].time));
        // The last one is what the others leave.
        if (i + 1 == bars.size()) time = rest;
        rest -= time;
        bars[i]->setValue(static_cast<int>(100 * time / total + 0.5));
    }
}
