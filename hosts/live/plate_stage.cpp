#include "plate_stage.h"

#include <QGridLayout>
#include <QSplitter>
#include <QVBoxLayout>

PlateStage::PlateStage(QWidget* parent)
    : QWidget(parent),
      plateView(new PlateView),
      rivalView(new PlateView),
      header(new ScoreHeader(tr("Your design"))),
      otherHeader(new ScoreHeader(tr("The optimiser's design, as drawn"))),
      problem(new Banner),
      rivalSide(new QWidget) {
    plateView->setAccessibleName(tr("Plate"));
    rivalView->setAccessibleName(tr("The optimiser's design"));
    rivalView->setFocusPolicy(Qt::NoFocus);

    // The banner lies above the plate, not beside it: the plate must not jump when a problem comes
    // and goes.
    auto* plateSide = new QWidget;
    auto* grid = new QGridLayout(plateSide);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addWidget(header, 0, 0);
    grid->addWidget(plateView, 1, 0);
    grid->addWidget(problem, 1, 0, Qt::AlignTop);
    grid->setRowStretch(1, 1);

    auto* column = new QVBoxLayout(rivalSide);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(otherHeader);
    column->addWidget(rivalView, 1);

    splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(plateSide);
    splitter->addWidget(rivalSide);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    setDrawing(false);
}

void PlateStage::setDrawing(bool draws) {
    header->setVisible(draws);
    rivalSide->setVisible(draws);
    if (!draws) return;
    // Both plates of the same size, to compare them.
    splitter->setSizes({width(), width()});
    header->showNone({});
    otherHeader->showNone(tr("The optimiser is at work."));
    rivalView->setMaterial({}, false);
}

void PlateStage::setColours(const PlateColours& colours) {
    plateView->setColours(colours);
    rivalView->setColours(colours);
}
