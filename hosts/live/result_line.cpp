#include "result_line.h"

#include <QHBoxLayout>

#include "field_help.h"
#include "number_text.h"
#include "problems.h"

namespace {

constexpr int DIGITS = 4;  // of the line
// Digits that change faster than that cannot be read.
constexpr float READABLE = 120;    // ms
constexpr int SKIPPED = 8;         // iterations, of faster ones
constexpr int DIGITS_AT_REST = 6;  // as many as the program prints

}  // namespace

ResultLine::ResultLine(QWidget* parent) : QWidget(parent), word(new QLabel), line(new QLabel) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 0);
    QFont bold = word->font();
    bold.setBold(true);
    word->setFont(bold);
    // Wide enough for each word, so that the text next to it does not move.
    for (const RunState state :
         {RunState::COMPUTING, RunState::AS_KEPT, RunState::FORMING, RunState::NOT_SETTLED})
        word->setMinimumWidth(
            std::max(word->minimumWidth(), word->fontMetrics().horizontalAdvance(wordFor(state))));
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A line that does not fit must not widen the window.
    line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    explainField(
        *word,
        tr("Forming: the optimiser improves the design. Settled: the compliance changed by no more "
           "than 0.1 % in the last 30 iterations, and the optimiser rests until you change "
           "something. Not settled: the optimiser stopped after 500 iterations, although the "
           "compliance still changes; Play continues. As kept: the design of a file or of a "
           "variant. The optimiser cannot continue it, and starts afresh."));
    layout->addWidget(word);
    layout->addSpacing(10);
    layout->addWidget(line, 1);
    refresh();
}

void ResultLine::showState(RunState state, const IterationNumbers& numbers, int seconds) {
    const int passed = numbers.iteration - last.iteration;
    const bool isTooSoon = state == RunState::FORMING && shown == state && passed >= 0 &&
                           passed < SKIPPED && numbers.times.totalTime < READABLE;
    if (isTooSoon) return;
    shown = state;
    last = numbers;
    waited = seconds;
    refresh();
}

void ResultLine::showScore(std::optional<ScoreResult> result) {
    score = std::move(result);
    refresh();
}

void ResultLine::setHalf(bool isHalf) {
    half = isHalf;
    refresh();
}

QString ResultLine::worth() const {
    if (!score->isSupported()) return tr("The design does not hold as drawn");
    return (half ? tr("Compliance of the half as drawn %1  ·  Material %2")
                 : tr("Compliance as drawn %1  ·  Material %2"))
        .arg(numberText(score->assessment.score.compliance, DIGITS_AT_REST),
             percentText(materialOf(score->design) / 100));
}

QString ResultLine::outlook() const {
    if (shown == RunState::AS_KEPT) return tr("  ·  Play starts afresh");
    if (shown == RunState::NOT_SETTLED) return tr("  ·  Play continues");
    return {};
}

QString ResultLine::progress() const {
    if (shown == RunState::PAUSED && last.iteration == 0) return tr("Not computed yet");
    QString text = tr("Iteration %1").arg(last.iteration);
    if (last.iteration > 0)
        text += (half ? tr("  ·  Compliance of the half so far %1  ·  Material %2")
                      : tr("  ·  Compliance so far %1  ·  Material %2"))
                    .arg(numberText(last.compliance, DIGITS), percentText(last.volume));
    if (shown == RunState::COMPUTING)
        text = tr("%n second(s) on iteration %1", nullptr, waited).arg(last.iteration + 1);
    return text;
}

QString ResultLine::details() const {
    QString text =
        tr("Compliance is force times displacement, summed over the load cases: the "
           "smaller it is, the stiffer is the structure.");
    if (half)
        text +=
            tr(" One half of the plate is computed: the whole carries twice the loads and has "
               "twice the compliance.");
    if (score && last.iteration > 0)
        text +=
            tr(" As drawn, each cell of the picture is either solid or void, and the picture is "
               "analysed cell by cell. The optimiser analyses elements, whose densities may lie "
               "in between: it found %1 at iteration %2.")
                .arg(numberText(last.compliance, DIGITS_AT_REST))
                .arg(last.iteration);
    return text + tr(" Material is the share of the plate that is solid. It may differ a little "
                     "from the volume you asked for, because the picture is a smoothed copy of the "
                     "optimiser's densities.");
}

void ResultLine::refresh() {
    word->setText(wordFor(shown));
    const bool rests = isAtRest(shown) || shown == RunState::AS_KEPT;
    if (rests && score)
        line->setText(worth() + outlook());
    else if (rests)
        line->setText(tr("Scoring the design..."));
    else if (shown == RunState::FAILED)
        line->setText(tr("The optimiser cannot go on"));
    else
        line->setText(progress());
    explainField(*line, details());
    setAccessibleName(text());
}
