#include "score_header.h"

#include <QVBoxLayout>

#include "problems.h"

ScoreHeader::ScoreHeader(const QString& name, QWidget* parent)
    : QWidget(parent), title(name), score(new QLabel("–")), details(new QLabel) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 6);
    layout->setSpacing(1);
    auto* heading = new QLabel(name);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    QFont large = score->font();
    large.setPointSizeF(2 * large.pointSizeF());
    score->setFont(large);
    details->setWordWrap(true);
    details->setMinimumHeight(2 * details->fontMetrics().lineSpacing());
    details->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    score->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(heading);
    layout->addWidget(score);
    layout->addWidget(details);
}

void ScoreHeader::show(const ScoreResult& result, const QString& note) {
    if (!result.isSupported()) {
        showNone(tr("Not supported. %1").arg(sentenceOf(result.assessment.problems.front())));
        return;
    }
    tell(tr("Compliance %1").arg(result.assessment.score.compliance, 0, 'g', 5));
    const QString material =
        tr("Material %1 %")
            .arg(materialOf(without(result.design, result.assessment.floating)), 0, 'f', 1);
    details->setText(note.isEmpty() ? material : material + "  ·  " + note);
}

void ScoreHeader::showNone(const QString& reason) {
    tell(tr("No score"));
    details->setText(reason);
}

void ScoreHeader::tell(const QString& text) {
    score->setText(text);
    score->setAccessibleName(title + ": " + text);
}
