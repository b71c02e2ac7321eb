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
    connect(&run, &LiveRun::drawingScored, &strip, &VariantStrip::offerScore);
    connect(&bench.document, &Document::opened, &strip, &VariantStrip::clear);
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
    // The score of a drawing comes after each stroke.
    if (!variant.score && !variant.isDrawn) {
        variant.score = run.scoreAsDrawn(shown->material, shown->scene);
        if (!variant.score) return;
    }
    variant.material = std::move(shown->material);
    variant.seen = std::make_shared<const Scene>(std::move(shown->scene));
    strip.add(std::move(variant));
}

void VariantKeeper::restore(const Variant& variant) {
    if (!variant.isDrawn) setDrawing(false);
    const bool isDone = bench.editWhole(tr("Restore variant"), [&](Scene& scene) {
        scene = *variant.whole;
        if (variant.isDrawn) scene.densities = variant.material;
    });
    if (!isDone) return;
    bench.document.play(variant.changesMade);
    if (variant.isDrawn) {
        setDrawing(true);
        return;
    }
    if (variant.seen->blob != bench.document.scene().blob) bench.setMovedBlob(variant.seen->blob);
    run.showKept(variant.material);
}
