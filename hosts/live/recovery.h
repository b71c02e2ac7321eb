#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>

#include "document.h"
#include "variant.h"

class VariantStrip;

/// Writes unsaved edits and variants to a file of this process, so that neither a crash nor SIGTERM
/// (such as at a logout) loses them. Saving or leaving the document removes the file.
class Recovery : public QObject {
    Q_OBJECT

public:
    explicit Recovery(Document& edited);
    /// The program ends in order: there is nothing to recover.
    ~Recovery() override;

    /// The variants to keep together with the edits.
    void setVariants(const VariantStrip& strip);
    /// The design to keep together with the edits; nothing unless the run has settled.
    void setDesignSource(std::function<std::optional<Field>()> source) {
        design = std::move(source);
    }

    /// Edits that another run of the program left behind.
    struct Found {
        std::filesystem::path kept;      ///< the file with the edits
        std::filesystem::path original;  ///< the file that was edited; empty for a new scene
        Scene scene;
        std::optional<Field> design;                  ///< if it had settled
        std::optional<std::deque<Variant>> variants;  ///< empty if they are as in their file
    };
    /// The newest edits of a program that has ended.
    static std::optional<Found> find();
    /// Removes the file, after the user has opened or declined the edits.
    static void forget(const Found& found);

    /// Schedules keep(). Call this when the run has settled.
    void follow();
    /// Writes unsaved edits and variants now.
    void keep();
    /// This process's file.
    static std::filesystem::path file();

    /// Lets SIGTERM, SIGHUP and SIGINT keep the edits and end the program.
    void endOnSignals();

private:
    Document& document;
    const VariantStrip* variants = nullptr;
    std::function<std::optional<Field>()> design = [] { return std::nullopt; };
    QTimer delay;
};
