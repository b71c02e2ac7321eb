#pragma once

#include <QAction>
#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>

#include "background.h"
#include "checks/floating_parts.h"
#include "format/field.h"
#include "format/scene.h"
#include "recorder.h"

using namespace voxam;

/// Writes the content of the plate to files, in the formats of the command-line program.
class ExportActions : public QObject {
    Q_OBJECT

public:
    /// A design in black and white, and how the plate shows it.
    struct Viewed {
        Field design;
        DesignView view;
    };

    /// What is to be exported.
    struct Exhibit {
        Scene scene;  ///< with the blob at its present place
        Field material;
        QString subtitle = {};
        std::optional<IterationNumbers> numbers = std::nullopt;  ///< of a picture of the optimiser
        std::vector<FloatingPart> floating = {};
        QString name = {};     ///< for a file, without ending
        QString problem = {};  ///< why the design would not hold; empty if it does
        bool isScored = true;  ///< whether `problem` is known
        std::optional<Viewed> viewed =
            std::nullopt;  ///< for pictures; empty if the material is seen
    };

    using Score =
        std::function<std::optional<ScoreResult>(const Field& material, const Scene& scene)>;

    /// Dialogs belong to `window`. `exhibit` returns the content of the plate, and `scoreAsDrawn`
    /// the score of a picture of the optimiser in black and white.
    ExportActions(QWidget& window, std::function<std::optional<Exhibit>()> exhibit,
                  Score scoreAsDrawn, const Recorder& frames);

    /// Puts the picture on the clipboard.
    QAction* copyAction() const { return copy; }
    QList<QAction*> actions() const { return {picture, design, outline, animation}; }

    // Without dialogs. If they fail, they throw InputError or std::runtime_error and write no file.
    std::vector<std::uint8_t> pictureBytes(const std::filesystem::path& file) const;
    void writePicture(const std::filesystem::path& file) const;
    void writeDesign(const std::filesystem::path& file) const;
    void writeOutline(const std::filesystem::path& file, double elementSize,
                      double thickness) const;
    void writeAnimation(const std::filesystem::path& file) const;

private:
    QAction* add(const QString& name, const QString& explanation, void (ExportActions::*slot)());
    void exportPicture();
    void copyPicture();
    void exportDesign();
    void exportOutline();
    /// Asks for the edge of an element, which the scene keeps. `whole` is the whole plate.
    std::optional<double> askElementSize(const Scene& whole);
    void exportAnimation();
    /// Asks for a file. The dialog suggests the name of the exhibit with `suffix` and `ending`.
    std::filesystem::path ask(const QString& title, const QString& filter, const QString& ending,
                              const QString& suffix = {});
    void attempt(const std::filesystem::path& file, const std::function<void()>& write);
    Exhibit exhibit() const;
    void writeInBackground(
        const QString& what, const std::filesystem::path& file,
        std::function<std::vector<std::uint8_t>(BackgroundProgress&)> encode) const;
    /// Asks before exporting a design that would not hold to a format for manufacturing.
    bool mayLeave() const;
    void addScore(Exhibit& shown) const;

    QWidget& parent;
    std::function<std::optional<Exhibit>()> current;
    Score score;
    const Recorder& recorder;
    QAction* picture;
    QAction* design;
    QAction* outline;
    QAction* animation;
    QAction* copy;

signals:
    void exported(const QString& message);
    /// The edge of an element that the user gave, in millimetres.
    void elementSizeGiven(double size);
};
