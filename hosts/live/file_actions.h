#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "document.h"
#include "recovery.h"
#include "variant.h"

class VariantStrip;

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
    QAction* const importAction;
    QMenu* const recentMenu;

    /// Opens a scene after asking about unsaved changes. If the file cannot be
    /// opened, reports why and changes nothing. Returns whether the scene is open.
    bool open(const std::filesystem::path& file);
    /// Opens a scene without asking, for the start of the program.
    bool load(const std::filesystem::path& file);
    /// Returns false if the user wants to keep working on the document.
    bool mayDiscard();

    /// Offers the unsaved edits of another run of the program. If the user accepts them, `own`
    /// writes them to the file of this process before the old file is removed. Returns whether the
    /// edits are open.
    bool recover(Recovery& own);

    /// The design to save next to the scene file: the design on the plate, or nothing.
    void setDesignSource(std::function<std::optional<Field>()> source) {
        design = std::move(source);
    }

    /// The variants to save next to the scene file.
    void setVariants(VariantStrip& strip);
    /// Whether edits or variants are not saved.
    bool isModified() const;

    /// The last scene that was opened or saved, if it still exists.
    std::filesystem::path lastFile() const;

signals:
    /// A scene was opened, with the design and the variants that were saved with it.
    void loaded(const std::optional<Field>& design, const std::deque<Variant>& variants);
    /// isModified() may have changed.
    void modificationChanged();
    /// A design replaced the drawing. `name` is the name of its file.
    void imported(const QString& name);
    /// A side effect of an import, as a sentence.
    void told(const QString& what);

private:
    void makeNew();
    void openRecovered(const Recovery::Found& found);
    /// Reports why files beside the scene cannot be read. Empty texts report nothing.
    void reportDamage(const std::string& ofDesign, const std::string& ofVariants);
    /// Renames a file that could not be read, before it is written.
    void setAside(const std::filesystem::path& file);
    void importDesign();
    /// Asks before another program's changes to the files are lost.
    bool mayReplace(const std::filesystem::path& target);
    /// A scene file, and the files of its design and of its variants.
    static std::array<std::filesystem::path, 3> filesOf(const std::filesystem::path& target);
    void stampFiles();
    void chooseAndOpen();
    bool save();
    bool saveAs();
    /// Asks before comments of the file are lost.
    bool mayDropComments(const std::filesystem::path& target);
    bool write(const std::filesystem::path& target);
    void remember(const std::filesystem::path& file);
    void fillRecentMenu();

    /// Whether a file is unchanged since it was read or written.
    struct FileStamp {
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const FileStamp&) const = default;
    };
    static std::optional<FileStamp> stampOf(const std::filesystem::path& file);

    Document& document;
    QWidget& parent;
    std::function<std::optional<Field>()> design = [] { return std::nullopt; };
    VariantStrip* variants = nullptr;
    std::array<std::optional<FileStamp>, 3> stamps;  // of filesOf()
    std::vector<std::filesystem::path> damaged;      // beside the scene, and not replaced yet
};
