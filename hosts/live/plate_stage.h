#pragma once

#include <QSplitter>
#include <QWidget>

#include "banner.h"
#include "field_bar.h"
#include "plate_view.h"
#include "result_line.h"
#include "scene_caption.h"
#include "score_header.h"
#include "timeline_strip.h"

/// The middle of the window: the plate and, while a design is drawn, the rival next to it. The
/// caption is above them, the result line and the banner are below.
class PlateStage : public QWidget {
    Q_OBJECT

public:
    explicit PlateStage(QWidget* parent = nullptr);

    PlateView& plate() { return *plateView; }
    PlateView& rival() { return *rivalView; }
    ScoreHeader& plateHeader() { return *header; }
    ScoreHeader& rivalHeader() { return *otherHeader; }
    SceneCaption& caption() { return *sceneCaption; }
    Banner& banner() { return *problem; }
    ResultLine& resultLine() { return *result; }

    FieldBar& fields() { return *fieldBar; }
    TimelineStrip& timeline() { return *strip; }

    void setDrawing(bool draws);
    /// Elements in x and y of the whole plate: the two plates of a drawing lie so that they are as
    /// large as can be.
    void setPlateSize(const QSizeF& size);
    void setColours(const PlateColours& colours);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void arrange();

    PlateView* plateView;
    PlateView* rivalView;
    ScoreHeader* header;
    ScoreHeader* otherHeader;
    SceneCaption* sceneCaption;
    Banner* problem;
    ResultLine* result;
    TimelineStrip* strip;
    QWidget* rivalSide;
    QSplitter* splitter;
    FieldBar* fieldBar;
    QSizeF plateSize{1, 1};
};
