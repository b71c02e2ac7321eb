#pragma once

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <filesystem>
#include <memory>

#include "format/scene.h"

using namespace voxam;

/// The scene that is being edited, its file and its history. Every change of the scene goes through
/// edit(), so that every change can be undone.
///
/// A scene is handed out as an immutable snapshot: the history and the worker share it, and nobody
/// has to copy or lock anything.
///
/// As the scene's timeline is played, the scene that is seen and edited is the one with the changes
/// that were made. An edit of a setting goes to where it comes from: to the last of these changes
/// that names it, or else to the scene itself. What is saved is the scene with its timeline.
class Document : public QObject {
    Q_OBJECT

public:
    Document();

    /// As it is now, with the changes that were made.
    const Scene& scene() const { return *current; }
    std::shared_ptr<const Scene> snapshot() const { return current; }

    /// As it is saved.
    std::shared_ptr<const Scene> whole() const { return saved; }

    /// So many changes of the timeline were made.
    void play(std::size_t changes);
    std::size_t changesMade() const { return made; }

    /// Takes the place of the scene and forgets the history. An empty file has no name yet.
    void open(Scene scene, const std::filesystem::path& file);

    /// The same with edits that were not saved: it counts as modified.
    void recover(Scene scene, const std::filesystem::path& file);

    /// Writes the scene in the program's format. Throws InputError; the file is then as before.
    void save(const std::filesystem::path& target);

    /// Empty for a scene that was not saved yet.
    const std::filesystem::path& file() const { return path; }
    QString displayName() const;
    bool isModified() const { return !history.isClean(); }
    /// Steps that can be undone: each holds a whole scene.
    static constexpr int MAX_STEPS = 300;

    /// Makes `next` the scene that is seen; `what` names the step in the menu, such as "Move load".
    /// Edits of one gesture (from pressing a mouse button to releasing it) become one step of the
    /// history. Throws InputError, and changes nothing, when the detail of the scene would not go
    /// with the rest.
    void edit(const QString& what, Scene next, int gesture = NO_GESTURE);
    static constexpr int NO_GESTURE = -1;
    /// Makes `next` the scene that is saved: for edits of the plate, which concern the timeline
    /// too.
    void editWhole(const QString& what, Scene next, int gesture = NO_GESTURE);
    int newGesture() { return ++lastGesture; }
    /// Takes back what a gesture did, without a trace in the history.
    void cancel(int gesture);

    QUndoStack& undoStack() { return history; }

signals:
    void sceneChanged();
    /// Another scene was opened, which sceneChanged() announces as well, before.
    void opened();
    void fileChanged();

private:
    class Edit;

    void show(std::shared_ptr<const Scene> scene);
    void refresh();
    Scene withSettings(const Scene& next) const;

    std::shared_ptr<const Scene> saved;
    std::shared_ptr<const Scene> current;  // the same one when no change was made
    std::size_t made = 0;
    std::filesystem::path path;
    QUndoStack history;
    int lastGesture = 0;
    bool isCancelling = false;
};
