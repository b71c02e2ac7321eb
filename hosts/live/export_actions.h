#pragma once

#include <QAction>
#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>

#include "field.h"
#include "floating_parts.h"
#include "recorder.h"
#include "scene.h"

/// Writes what the plate shows to files, in the forms that the command-line program has.
class ExportActions : public QObject {
    Q_OBJECT

public:
    /// What is to be exported.
    struct Exhibit {
        Scene scene;  ///< its blob where it is now
        Field material;
        std::optional<Field> energies;
        QString subtitle;
        std::vector<FloatingPart> floating = {};
    };

    /// For a picture of an iteration, and of a drawing.
    static QString subtitleOf(const IterationNumbers& numbers);
    static QString subtitleOf(const ScoreResult& result);

    /// Dialogs belong to `window`. `exhibit` gives what is shown at the time of the call.
    ExportActions(QWidget& window, std::function<std::optional<Exhibit>()> exhibit,
                  const Recorder& frames);

    QList<QAction*> actions() const { return {picture, design, outline, animation}; }

    // Without dialogs. They throw InputError or std::runtime_error, and then there is no file.
    void writePicture(const std::filesystem::path& file) const;
    void writeDesign(const std::filesystem::path& file) const;
    void writeOutline(const std::filesystem::path& file, double elementSize,
                      double thickness) const;
    void writeAnimation(const std::filesystem::path& file) const;

private:
    QAction* add(const QString& name, const QString& explanation, void (ExportActions::*slot)());
    void exportPicture();
    void exportDesign();
    void exportOutline();
    void exportAnimation();
    std::filesystem::path ask(const QString& title, const QString& filter, const QString& ending);
    void attempt(const std::filesystem::path& file, const std::function<void()>& write);
    Exhibit exhibit() const;

    QWidget& parent;
    std::function<std::optional<Exhibit>()> current;
    const Recorder& recorder;
    QAction* picture;
    QAction* design;
    QAction* outline;
    QAction* animation;

signals:
    void exported(const QString& message);
};
