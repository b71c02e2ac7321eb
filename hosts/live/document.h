#pragma once

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <filesystem>
#include <memory>

#include "drawn_by_hand.h"
#include "format/scene.h"

using namespace voxam;

/// The scene that is being edited, its file and its history. Every change of the scene goes through
/// edit(), so that every change can be undone.
///
/// Scenes are immutable snapshots. The history and the worker share them without copies or locks.
///
/// While the timeline plays, users see and edit the scene with the changes that were made so far.
/// An edit of a setting goes to its origin: to the last of these changes that has the setting, or
/// otherwise to the scene itself. The scene is saved with its timeline.
class Document : public QObject {
    Q_OBJECT

public:
    Document();

    DrawnByHand byHand;

    /// The present scene, with the changes that were made so far.
    const Scene& scene() const { return *current; }
    std::shared_ptr<const Scene> snapshot() const { return current; }

    /// The scene with its timeline, as it is saved.
    std::shared_ptr<const Scene> whole() const { return saved; }

    /// Makes the first `changes` changes of the timeline.
    void play(std::size_t changes);
    std::size_t changesMade() const { return made; }

    /// Replaces the scene and clears the history. `file` is empty if the scene has no file yet.
    void open(Scene scene, const std::filesystem::path& file);

    /// Opens a scene with unsaved edits: it counts as modified.
    void recover(Scene scene, const std::filesystem::path& file);

    /// Writes the scene in the program's format. If that fails, throws InputError and leaves the
    /// file unchanged.
    void save(const std::filesystem::path& target);

    /// Empty if the scene has no file yet.
    const std::filesystem::path& file() const { return path; }
    QString displayName() const;
    bool isModified() const { return !history.isClean(); }
    /// Steps that can be undone. Each step contains a whole scene.
    static constexpr int MAX_STEPS = 300;

    /// Makes `next` the scene that is seen; `what` names the step in the menu, such as "Move load".
    /// Edits of one gesture (from pressing a mouse button to releasing it) become one step of the
    /// history. Throws InputError, and changes nothing, if the scene would break a limit or a rule
    /// of its detail.
    void edit(const QString& what, Scene next, int gesture = NO_GESTURE);
    static constexpr int NO_GESTURE = -1;
    /// Makes `next` the scene that is saved: for edits that concern the timeline, too.
    void editWhole(const QString& what, Scene next, int gesture = NO_GESTURE);
    int newGesture() { return ++lastGesture; }
    /// Undoes a gesture and removes it from the history.
    void cancel(int gesture);

    QUndoStack& undoStack() { return history; }

signals:
    void sceneChanged();
    /// Another scene was opened. sceneChanged() is emitted before.
    void opened();
    void fileChanged();

private:
    class Edit;

    void show(std::shared_ptr<const Scene> scene);
    void refresh();
    Scene withSettings(const Scene& next) const;

    std::shared_ptr<const Scene> saved;
    std::shared_ptr<const Scene> current;  // the same object if no change was made
    std::size_t made = 0;
    std::filesystem::path path;
    QUndoStack history;
    int lastGesture = 0;
    bool isCancelling = false;
};
