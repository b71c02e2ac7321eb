#pragma once

#include <QAction>
#include <QObject>
#include <functional>

#include "live_run.h"
#include "variant_strip.h"

/// Keeps the design on the plate as a variant, and shows a variant on the plate again.
class VariantKeeper : public QObject {
    Q_OBJECT

public:
    /// The content of the plate.
    struct View {
        Scene scene;
        Field material;
        bool isDrawn = false;
        std::optional<ScoreResult> score;  ///< if it is known
    };
    using Look = std::function<std::optional<View>()>;

    /// `enterMode` starts or ends the drawing of a design.
    VariantKeeper(Workbench& workbench, LiveRun& liveRun, VariantStrip& variantStrip, Look look,
                  std::function<void(bool draws)> enterMode);

    QAction* const keepAction;

    /// Shows the variants that were saved with the document, and has them scored.
    void open(std::deque<Variant> variants);

    /// An empty name is replaced by a number.
    void keep(const QString& name = {});

signals:
    void told(const QString& text);

private:
    void restore(const Variant& variant);
    /// Requests the score of a variant without a score. The worker has room for one request.
    void requestScore();

    Workbench& bench;
    LiveRun& run;
    VariantStrip& strip;
    Look current;
    std::function<void(bool draws)> setDrawing;
    bool isAwaiting = false;
};
