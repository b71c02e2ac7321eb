#include "plate_stage.h"

#include <QSplitter>
#include <QVBoxLayout>

#include "field_help.h"

PlateStage::PlateStage(QWidget* parent)
    : QWidget(parent),
      plateView(new PlateView),
      rivalView(new PlateView),
      header(new ScoreHeader(tr("Your design"))),
      otherHeader(new ScoreHeader(tr("The optimiser's design, as drawn"))),
      sceneCaption(new SceneCaption),
      problem(new Banner),
      result(new ResultLine),
      strip(new TimelineStrip),
      rivalSide(new QWidget) {
    plateView->setAccessibleName(tr("Plate"));
    rivalView->setAccessibleName(tr("The optimiser's design"));
    rivalView->setFocusPolicy(Qt::NoFocus);
    plateView->setWhatsThis(
        tr("<qt>The plate and the structure on it. Arrows are loads. Triangles are supports; a "
           "small wheel below one lets the plate slide. The tools change all of these.</qt>"));
    explainField(
        *header,
        tr("100 % means that your design is as stiff as the best design of the optimiser: the "
           "loads move it as little. Both may use the same amount of material. From 85 % on you "
           "win bronze, from 95 % silver and from 100 % gold, if you drew the design by hand and "
           "began with an empty plate."));
    explainField(*otherHeader,
                 tr("As drawn means in black and white, without the greys of the optimiser. It "
                    "has cells as large as those of your drawing. Outside this mode it has "
                    "finer cells, so its compliance and material differ a little."));

    auto* plateSide = new QWidget;
    auto* side = new QVBoxLayout(plateSide);
    side->setContentsMargins(0, 0, 0, 0);
    side->setSpacing(0);
    side->addWidget(header);
    side->addWidget(plateView, 1);

    auto* column = new QVBoxLayout(rivalSide);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(otherHeader);
    column->addWidget(rivalView, 1);

    splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(plateSide);
    splitter->addWidget(rivalSide);
    splitter->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(sceneCaption);
    layout->addWidget(splitter, 1);
    fieldBar = new FieldBar;
    layout->addWidget(fieldBar);
    connect(fieldBar, &FieldBar::animated, this, [this](double share) {
        plateView->setDeformationShare(share);
        rivalView->setDeformationShare(share);
    });
    layout->addWidget(strip);
    layout->addWidget(result);
    layout->addWidget(problem);
    setDrawing(false);
}

void PlateStage::setDrawing(bool draws) {
    header->setVisible(draws);
    result->setVisible(!draws);
    strip->setDrawing(draws);
    rivalSide->setVisible(draws);
    fieldBar->setDrawing(draws);
    // Beside another plate there is little room.
    plateView->setRulers(!draws);
    rivalView->setRulers(!draws);
    plateView->fit();
    if (!draws) return;
    arrange();
}

void PlateStage::setPlateSize(const QSizeF& size) {
    if (plateSize == size) return;
    plateSize = size;
    arrange();
}

// The widgets above and below the plates may appear and disappear.
bool PlateStage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == splitter && event->type() == QEvent::Resize) arrange();
    return QWidget::eventFilter(watched, event);
}

void PlateStage::arrange() {
    const auto scaleWithin = [this](double across, double down) {
        return std::min(
            (across - 2 * SIGN_MARGIN) / plateSize.width(),
            (down - 2 * SIGN_MARGIN - header->sizeHint().height()) / plateSize.height());
    };
    const QSizeF room = splitter->size();
    const bool isBeside = scaleWithin(0.5 * room.width(), room.height()) >=
                          scaleWithin(room.width(), 0.5 * room.height());
    splitter->setOrientation(isBeside ? Qt::Horizontal : Qt::Vertical);
    // Both plates of the same size, to compare them.
    splitter->setSizes({1000, 1000});
}

void PlateStage::setColours(const PlateColours& colours) {
    plateView->setColours(colours);
    rivalView->setColours(colours);
    fieldBar->legend().setColours(colours);
}
