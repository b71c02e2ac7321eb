#include "live_run.h"

#include <algorithm>
#include <utility>

LiveRun::LiveRun(Workbench& workbench)
    : bench(workbench),
      worker([this] { QMetaObject::invokeMethod(this, &LiveRun::fetch, Qt::QueuedConnection); }) {
    connect(&bench.document, &Document::sceneChanged, this, &LiveRun::followScene);
    connect(&bench.document, &Document::opened, this, &LiveRun::startAfresh);
}

void LiveRun::setPlaying(bool plays) {
    if (playing == plays) return;
    playing = plays;
    plays ? worker.play() : worker.pause();
    emit playingChanged(plays);
}

void LiveRun::step() {
    setPlaying(false);
    worker.step();
}

void LiveRun::startAfresh() {
    ++settings.start;
    sendSettings();
    emit startedAfresh();
}

void LiveRun::setMovesBlob(bool moves) {
    if (settings.movesBlob == moves) return;
    settings.movesBlob = moves;
    sendSettings();
}

void LiveRun::setDrawing(bool draws) {
    settings.scoresDesign = draws;
    sendSettings();
}

void LiveRun::scoreDrawing(std::shared_ptr<const Field> drawing) {
    worker.score({bench.document.snapshot(), std::move(drawing), settings.revision});
}

void LiveRun::followScene() {
    // Each update unsettles the optimiser for a few iterations, so a stroke of a drawing that
    // leaves its volume as it was must not be one.
    if (settings.scene && *sceneToOptimise() == *settings.scene) return;
    sendSettings();
}

std::shared_ptr<const Scene> LiveRun::sceneToOptimise() const {
    Scene scene = bench.document.scene();
    if (settings.scoresDesign && scene.densities) {
        const double material = materialOf(*scene.densities) / 100;
        if (material > 0) scene.volumeFraction = std::max(material, Scene::MIN_VOLUME_FRACTION);
    }
    scene.densities.reset();
    return std::make_shared<const Scene>(std::move(scene));
}

void LiveRun::sendSettings() {
    settings.scene = sceneToOptimise();
    ++settings.revision;
    worker.send(settings);
    emit settingsSent();
}

void LiveRun::fetch() {
    const bool hasFrame = worker.fetchFrame(front);
    const auto numbers = worker.fetchNumbers();
    const LibraryText last = worker.fetchText();
    if (hasFrame) {
        // An edit of the blob starts from where it is.
        bench.setMovedBlob(front.hasBlob ? std::optional(blobOf(front)) : std::nullopt);
        emit frameChanged();
    }
    if (!numbers.empty()) emit iterated(numbers);
    const QString text = QString::fromStdString(last.text);
    if (std::exchange(libraryText, text) != text) emit textChanged(text);
    if (const auto score = worker.fetchScore()) emit drawingScored(*score);
    if (const auto score = worker.fetchDesignScore()) emit designScored(*score);
}
