#include "document.h"

#include <QUndoCommand>
#include <algorithm>
#include <utility>

#include "export/output_file.h"
#include "format/detail.h"
#include "format/limits.h"
#include "format/scene_writer.h"
#include "format/setting_keys.h"
#include "format/timeline.h"

using namespace voxam;

/// One step: the scenes before and after it.
class Document::Edit : public QUndoCommand {
public:
    Edit(Document& owner, const QString& what, std::shared_ptr<const Scene> next, int gestureId)
        : QUndoCommand(what),
          document(owner),
          before(owner.saved),
          after(std::move(next)),
          gesture(gestureId) {}

    void undo() override {
        setObsolete(document.isCancelling);
        document.show(before);
    }
    void redo() override { document.show(after); }
    int id() const override { return gesture; }

    bool mergeWith(const QUndoCommand* other) override {
        after = static_cast<const Edit*>(other)->after;
        // A drag that ends where it began changed nothing.
        setObsolete(*before == *after);
        return true;
    }

private:
    Document& document;
    std::shared_ptr<const Scene> before;
    std::shared_ptr<const Scene> after;
    int gesture;
};

Document::Document() : saved(std::make_shared<const Scene>()), current(saved) {
    history.setUndoLimit(MAX_STEPS);
    connect(&history, &QUndoStack::cleanChanged, this, &Document::fileChanged);
}

void Document::open(Scene scene, const std::filesystem::path& file) {
    history.clear();
    path = file;
    made = 0;
    show(std::make_shared<const Scene>(std::move(scene)));
    emit opened();
    emit fileChanged();
}

void Document::recover(Scene scene, const std::filesystem::path& file) {
    open(std::move(scene), file);
    history.resetClean();
}

void Document::save(const std::filesystem::path& target) {
    // What nobody changed keeps its bytes, and with them its comments.
    std::error_code error;
    if (!isModified() && target == path && std::filesystem::exists(path, error)) return;
    const std::string text = sceneText(*saved);
    writeFile(target, {text.begin(), text.end()});
    path = target;
    history.setClean();
    emit fileChanged();
}

QString Document::displayName() const {
    return path.empty() ? tr("Untitled") : QString::fromStdString(path.filename().string());
}

void Document::play(std::size_t changes) {
    changes = std::min(changes, saved->timeline.size());
    if (changes == std::exchange(made, changes)) return;
    refresh();
}

void Document::edit(const QString& what, Scene next, int gesture) {
    editWhole(what, current == saved ? std::move(next) : withSettings(next), gesture);
}

Scene Document::withSettings(const Scene& next) const {
    Scene result = *saved;
    result.densities = next.densities;
    const auto last = result.timeline.rend() - static_cast<std::ptrdiff_t>(made);
    for (const SettingKey& key : settingKeys()) {
        if (key.same(*current, next)) continue;
        const auto origin = std::find_if(last, result.timeline.rend(), [&](const Change& change) {
            return change.has(key.name);
        });
        Settings& target = origin == result.timeline.rend() ? result : origin->settings;
        key.copy(next, target);
    }
    return result;
}

void Document::editWhole(const QString& what, Scene next, int gesture) {
    if (*saved == next) return;
    checkLimits(next);
    checkDetail(next, detailOf(next));
    history.push(new Edit(*this, what, std::make_shared<const Scene>(std::move(next)), gesture));
}

void Document::cancel(int gesture) {
    const QUndoCommand* last = history.command(history.index() - 1);
    if (last == nullptr || last->id() != gesture) return;
    isCancelling = true;
    history.undo();
    isCancelling = false;
}

void Document::show(std::shared_ptr<const Scene> scene) {
    saved = std::move(scene);
    made = std::min(made, saved->timeline.size());
    refresh();
}

void Document::refresh() {
    current = saved;
    if (made > 0) {
        Scene now = *saved;
        for (std::size_t i = 0; i < made; ++i) apply(saved->timeline[i], now);
        current = std::make_shared<const Scene>(std::move(now));
    }
    emit sceneChanged();
}
