#include "score_header.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "number_text.h"
#include "theme.h"

namespace {

constexpr int BAR_HEIGHT = 10;  // pixels
constexpr int BAR_WIDTH = 200;
constexpr double HEADLINE_SIZE = 1.6;  // of the usual font
constexpr int STEPS = 1000;
constexpr int DETAIL_LINES = 2;

}  // namespace

ScoreHeader::ScoreHeader(const QString& name, QWidget* parent)
    : QWidget(parent),
      title(name),
      heading(new QLabel(name)),
      headlineLabel(new QLabel("–")),
      detailLabel(new QLabel),
      material(new QProgressBar),
      materialLabel(new QLabel) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 8, 14, 4);
    layout->setSpacing(1);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    QFont large = headlineLabel->font();
    large.setPointSizeF(HEADLINE_SIZE * large.pointSizeF());
    headlineLabel->setFont(large);
    headlineLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Words that do not fit must not widen the window.
    heading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    headlineLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    detailLabel->setWordWrap(true);
    detailLabel->setFixedHeight(DETAIL_LINES * detailLabel->fontMetrics().lineSpacing());
    detailLabel->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    material->setRange(0, STEPS);
    material->setMaximumSize(BAR_WIDTH, BAR_HEIGHT);
    // Words on two colours are hard to read, so they are next to the bar.
    material->setTextVisible(false);
    auto* budget = new QHBoxLayout;
    budget->setSpacing(8);
    budget->addWidget(material, 1);
    budget->addWidget(materialLabel, 1);
    material->setAccessibleName(title + ": " + tr("material used of the budget"));
    layout->addWidget(heading);
    layout->addWidget(headlineLabel);
    layout->addLayout(budget);
    layout->addWidget(detailLabel);
}

void ScoreHeader::show(const QString& headline, const QString& details) {
    wholeHeadline = headline;
    headlineLabel->setAccessibleName(title + ": " + headline);
    allDetails = details;
    fitTexts();
}

void ScoreHeader::setRemark(const QString& remark) {
    heading->setText(remark.isEmpty() ? title : title + "  ·  " + remark);
}

void ScoreHeader::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // The layout sets the labels before this event comes.
    fitTexts();
}

void ScoreHeader::fitTexts() {
    const QFontMetrics metrics = detailLabel->fontMetrics();
    const auto fits = [&](const QString& text) {
        const QRect room(0, 0, detailLabel->width(), 0);
        return metrics.boundingRect(room, Qt::TextWordWrap, text).height() <=
               DETAIL_LINES * metrics.lineSpacing();
    };
    QString shown = allDetails;
    for (auto end = shown.size(); end > 0 && !fits(shown);) {
        end = allDetails.lastIndexOf(' ', end - 1);
        shown = allDetails.left(std::max<decltype(end)>(0, end)) + QString::fromUtf8(" …");
    }
    detailLabel->setText(shown);
    // Without its own tooltip, the label shows the tooltip of the header.
    detailLabel->setToolTip(shown == allDetails ? QString() : allDetails);
    const QString line = headlineLabel->fontMetrics().elidedText(wholeHeadline, Qt::ElideRight,
                                                                 headlineLabel->width());
    headlineLabel->setText(line);
    headlineLabel->setToolTip(line == wholeHeadline ? QString() : wholeHeadline);
}

void ScoreHeader::showMaterial(double used, double budget, bool isOver) {
    const double share = budget > 0 ? used / budget : 0;
    material->setValue(static_cast<int>(std::lround(STEPS * std::min(1.0, share))));
    materialLabel->setText(tr("Material %1 of %2").arg(percentText(used), percentText(budget)));
    // Its words say the same as its colour.
    QPalette colours;
    if (isOver) colours.setColor(QPalette::Highlight, QColor(200, 60, 50));
    material->setPalette(colours);
}
