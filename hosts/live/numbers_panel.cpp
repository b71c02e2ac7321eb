#include "numbers_panel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QTimer>
#include <QVBoxLayout>

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
    static const std::array<Part, 5> all = {{{"Assembly", &RuntimeStat::assembleTime},
                                             {"Factorisation", &RuntimeStat::factorizeTime},
                                             {"Solution", &RuntimeStat::solveTime},
                                             {"Sensitivities", &RuntimeStat::sensitivityTime},
                                             {"Update and picture", &RuntimeStat::updateTime}}};
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
    compliance->setToolTip(tr("Force times displacement: less is stiffer"));
    change->setToolTip(tr("Largest change of a density; below 0.01 little happens any more"));
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
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &NumbersPanel::refresh);
    timer->start(REFRESH_INTERVAL);
}

void NumbersPanel::add(const std::vector<IterationNumbers>& numbers) {
    recent.insert(recent.end(), numbers.begin(), numbers.end());
    while (recent.size() > AVERAGED) recent.pop_front();
}

void NumbersPanel::clear() {
    recent.clear();
    tell(*iteration, "0");
    for (QLabel* label : {compliance, volume, change, milliseconds}) tell(*label, "–");
    for (QProgressBar* bar : bars) bar->setValue(0);
}

void NumbersPanel::countFrame() { frameTimes.push_back(clock.elapsed()); }

double NumbersPanel::framesPerSecond() {
    const qint64 now = clock.elapsed();
    while (!frameTimes.empty() && frameTimes.front() < now - FRAME_SPAN) frameTimes.pop_front();
    return static_cast<double>(frameTimes.size()) * 1000 / FRAME_SPAN;
}

void NumbersPanel::refresh() {
    tell(*frames, QString::number(framesPerSecond(), 'f', 0));
    if (recent.empty()) return;
    const IterationNumbers& last = recent.back();
    tell(*iteration, QString::number(last.iteration));
    tell(*compliance, QString::number(last.compliance, 'g', 6));
    tell(*volume, QString::number(100 * last.volume, 'f', 1) + " %");
    tell(*change, QString::number(last.change, 'f', 4));
    refreshTimes();
}

void NumbersPanel::refreshTimes() {
    double total = 0;
    for (const auto& numbers : recent) total += static_cast<double>(numbers.times.totalTime);
    const double each = total / static_cast<double>(recent.size());
    tell(*milliseconds, tr("%1 ms").arg(each, 0, 'f', each > 1000 ? 0 : 1));
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
