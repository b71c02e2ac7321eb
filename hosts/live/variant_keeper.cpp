#include "variant_keeper.h"

#include <utility>

#include "action_text.h"
#include "icons.h"

using namespace voxam;

VariantKeeper::VariantKeeper(Workbench& workbench, LiveRun& liveRun, VariantStrip& variantStrip,
                             Look look, std::function<void(bool draws)> enterMode)
    : keepAction(new QAction(icon(Glyph::KEEP_VARIANT), tr("&Keep variant"), this)),
      bench(workbench),
      run(liveRun),
      strip(variantStrip),
      current(std::move(look)),
      setDrawing(std::move(enterMode)) {
    keepAction->setShortcut(QKeySequence("Ctrl+K"));
    explain(*keepAction, tr("Keep the present design, to compare it or to return to it"));
    connect(keepAction, &QAction::triggered, this, [this] { keep(); });
    connect(&strip, &VariantStrip::restoreRequested, this, &VariantKeeper::restore);
    connect(&run, &LiveRun::variantScored, this, [this](const ScoreResult& result) {
        strip.offerScore(result);
        isAwaiting = false;
        requestScore();
    });
    connect(&bench.document, &Document::opened, &strip, &VariantStrip::clear);
}

void VariantKeeper::open(std::deque<Variant> variants) {
    strip.open(std::move(variants));
    requestScore();
}

void VariantKeeper::keep(const QString& name) {
    auto shown = current();
    if (!shown) {
        emit told(tr("There is no design yet: let it form, or draw one"));
        return;
    }
    Variant variant;
    variant.name = name;
    variant.whole = bench.document.whole();
    variant.changesMade = bench.document.changesMade();
    variant.isDrawn = shown->isDrawn;
    variant.score = std::move(shown->score);
    variant.revision = run.revision();
    variant.material = std::move(shown->material);
    variant.seen = std::make_shared<const Scene>(std::move(shown->scene));
    variant.findDrawn();
    strip.add(std::move(variant));
    requestScore();
}

void VariantKeeper::requestScore() {
    if (isAwaiting) return;
    for (const Variant& variant : strip.variants()) {
        if (variant.score) continue;
        isAwaiting = true;
        run.scoreVariant(variant.seen, variant.drawn, variant.revision);
        return;
    }
}

void VariantKeeper::restore(const Variant& variant) {
    const auto drawing = bench.document.scene().densities;
    if (!variant.isDrawn) setDrawing(false);
    const bool isDone = bench.editWhole(tr("Restore variant"), [&](Scene& scene) {
        scene = *variant.whole;
        if (variant.isDrawn) scene.densities = variant.material;
    });
    if (!isDone) return;
    bench.document.play(variant.changesMade);
    if (variant.isDrawn) {
        setDrawing(true);
    } else {
        if (variant.seen->blob != bench.document.scene().blob)
            bench.setMovedBlob(variant.seen->blob);
        run.showKept(variant.material);
    }
    if (drawing && bench.document.scene().densities != drawing)
        emit told(tr("The variant replaces your drawing. Undo brings it back."));
}
