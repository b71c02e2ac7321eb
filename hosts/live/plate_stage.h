#pragma once

#include <QSplitter>
#include <QWidget>

#include "banner.h"
#include "plate_view.h"
#include "score_header.h"

/// The middle of the window: the plate with its banner and, while a design is drawn, the rival
/// beside it.
class PlateStage : public QWidget {
    Q_OBJECT

public:
    explicit PlateStage(QWidget* parent = nullptr);

    PlateView& plate() { return *plateView; }
    PlateView& rival() { return *rivalView; }
    ScoreHeader& plateHeader() { return *header; }
    ScoreHeader& rivalHeader() { return *otherHeader; }
    Banner& banner() { return *problem; }

    void setDrawing(bool draws);
    void setColours(const PlateColours& colours);

private:
    PlateView* plateView;
    PlateView* rivalView;
    ScoreHeader* header;
    ScoreHeader* otherHeader;
    Banner* problem;
    QWidget* rivalSide;
    QSplitter* splitter;
};
