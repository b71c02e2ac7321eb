#include "document.h"

#include <QUndoCommand>
#include <utility>

#include "output_file.h"
#include "scene_writer.h"

/// One step: the scenes before and after it.
class Document::Edit : public QUndoCommand {
public:
    Edit(Document& owner, const QString& what, std::shared_ptr<const Scene> next, int gestureId)
        : QUndoCommand(what),
          document(owner),
          before(owner.current),
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

Document::Document() : current(std::make_shared<const Scene>()) {
    connect(&history, &QUndoStack::cleanChanged, this, &Document::fileChanged);
}

void Document::open(Scene scene, const std::filesystem::path& file) {
    history.clear();
    path = file;
    show(std::make_shared<const Scene>(std::move(scene)));
    emit opened();
    emit fileChanged();
}

void Document::save(const std::filesystem::path& target) {
    const std::string text = sceneText(*current);
    writeFile(target, {text.begin(), text.end()});
    path = target;
    history.setClean();
    emit fileChanged();
}

QString Document::displayName() const {
    return path.empty() ? tr("Untitled") : QString::fromStdString(path.filename().string());
}

void Document::edit(const QString& what, Scene next, int gesture) {
    if (*current == next) return;
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
    current = std::move(scene);
    emit sceneChanged();
}
