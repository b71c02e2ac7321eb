#pragma once

#include <QObject>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "document.h"

/// Writes unsaved edits to a file of this process, so that neither a crash nor SIGTERM (such as at
/// a logout) loses them. Saving or leaving the document removes the file.
class Recovery : public QObject {
    Q_OBJECT

public:
    explicit Recovery(Document& edited);
    /// The program ends in order: there is nothing to recover.
    ~Recovery() override;

    /// Edits that another run of the program left behind.
    struct Found {
        std::filesystem::path kept;      ///< the file with the edits
        std::filesystem::path original;  ///< the file that was edited; empty for a new scene
        Scene scene;
    };
    /// The newest edits of a program that has ended.
    static std::optional<Found> find();
    /// Removes the file, after the user has opened or declined the edits.
    static void forget(const Found& found);

    /// Writes the unsaved edits now.
    void keep();
    /// This process's file.
    static std::filesystem::path file();

    /// Lets SIGTERM, SIGHUP and SIGINT keep the edits and end the program.
    void endOnSignals();

private:
    void follow();

    Document& document;
    QTimer delay;
};
