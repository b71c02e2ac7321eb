#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <filesystem>

#include "document.h"

/// Opens and saves the document, remembers files, and asks before changes are lost.
class FileActions : public QObject {
    Q_OBJECT

public:
    /// Dialogs belong to `window`.
    FileActions(Document& edited, QWidget& window);

    QAction* const newAction;
    QAction* const openAction;
    QAction* const saveAction;
    QAction* const saveAsAction;
    QMenu* const recentMenu;

    /// Opens a scene after asking about unsaved changes. Tells what is wrong with a file, and then
    /// everything stays as it was. Returns whether it is open.
    bool open(const std::filesystem::path& file);
    /// The same without a question, for the start of the program.
    bool load(const std::filesystem::path& file);
    /// Returns false when the user wants to keep working on the document.
    bool mayDiscard();

    /// The last scene that was opened or saved, if it is still there.
    std::filesystem::path lastFile() const;

signals:
    void madeNew();

private:
    void makeNew();
    void chooseAndOpen();
    bool save();
    bool saveAs();
    /// Asks before comments of the file are lost.
    bool mayDropComments(const std::filesystem::path& target);
    bool write(const std::filesystem::path& target);
    void remember(const std::filesystem::path& file);
    void fillRecentMenu();

    Document& document;
    QWidget& parent;
};
