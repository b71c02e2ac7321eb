#include "export_actions.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSettings>
#include <algorithm>

#include "action_text.h"
#include "background.h"
#include "checks/assessment.h"
#include "drawing/field_content.h"
#include "drawing/picture.h"
#include "drawing/subtitles.h"
#include "drawing/whole_content.h"
#include "export/animation.h"
#include "export/design_file.h"
#include "export/file_ending.h"
#include "export/outline_file.h"
#include "export/output_file.h"
#include "export/picture_file.h"
#include "field_manners.h"
#include "format/input_error.h"
#include "format/symmetry.h"
#include "format/text.h"
#include "number_text.h"
#include "problems.h"

using namespace voxam;

namespace fs = std::filesystem;

namespace {

constexpr const char* DIRECTORY_KEY = "exportDirectory";
constexpr double USUAL_THICKNESS = 0.1;  // of the plate's shorter side

/// Asks for a length in millimetres. If the user does not change the proposal, returns it exactly,
/// although the field may show fewer digits.
std::optional<double> askLength(QWidget& parent, const QString& title,
                                const std::function<QString(double length)>& label,
                                double proposal) {
    QInputDialog dialog(&parent);
    dialog.setWindowTitle(title);
    dialog.setInputMode(QInputDialog::DoubleInput);
    dialog.setDoubleDecimals(LENGTH_DECIMALS);
    dialog.setDoubleRange(Scene::MIN_ELEMENT_SIZE, Scene::MAX_ELEMENT_SIZE);
    dialog.setDoubleValue(proposal);
    const auto show = [&](double length) { dialog.setLabelText(label(length)); };
    show(proposal);
    QObject::connect(&dialog, &QInputDialog::doubleValueChanged, &dialog, show);
    for (auto* box : dialog.findChildren<QDoubleSpinBox*>()) FieldManners::readBothSigns(*box);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const double given = dialog.doubleValue();
    const bool isChanged = given != QString::number(proposal, 'f', LENGTH_DECIMALS).toDouble();
    return isChanged ? given : proposal;
}

int scaleOf(const ExportActions::Exhibit& exhibit) {
    return refinedPictureScale(wholeOf(exhibit.scene),
                               exhibit.material.width / exhibit.scene.width);
}

/// Of the whole plate, where the scene describes one half.
PictureContent contentOf(const ExportActions::Exhibit& exhibit) {
    PictureContent content{exhibit.material, std::nullopt, exhibit.scene.title,
                           exhibit.subtitle.toStdString(), exhibit.floating};
    if (exhibit.viewed) {
        const DesignView& view = exhibit.viewed->view;
        content.material = exhibit.viewed->design;
        const auto states = view.states ? *view.states : std::vector<PlateState>();
        content.subtitle += showField(*view.field, states, exhibit.scene, content);
    }
    return wholeOf(content, exhibit.scene.symmetry);
}

}  // namespace

ExportActions::ExportActions(QWidget& window, std::function<std::optional<Exhibit>()> exhibit,
                             Score scoreAsDrawn, const Recorder& frames)
    : parent(window),
      current(std::move(exhibit)),
      score(std::move(scoreAsDrawn)),
      recorder(frames),
      picture(add(tr("&Picture (PNG, SVG)..."), tr("The plate with its signs"),
                  &ExportActions::exportPicture)),
      design(add(tr("&Design (PNG, CSV)..."), tr("The densities of the design"),
                 &ExportActions::exportDesign)),
      outline(add(tr("&Outline (SVG, DXF, STL)..."),
                  tr("The edge of the material as a drawing, or the plate as a solid"),
                  &ExportActions::exportOutline)),
      animation(add(tr("&Animation (GIF)..."), tr("The last minutes of the run"),
                    &ExportActions::exportAnimation)),
      copy(add(tr("Copy p&icture"), tr("Put a picture of the plate on the clipboard"),
               &ExportActions::copyPicture)) {
    copy->setShortcut(QKeySequence("Ctrl+Shift+C"));
    explain(*copy, copy->statusTip());
    picture->setShortcut(QKeySequence("Ctrl+E"));
    explain(*picture, picture->statusTip());
}

QAction* ExportActions::add(const QString& name, const QString& explanation,
                            void (ExportActions::*slot)()) {
    auto* action = new QAction(name, this);
    explain(*action, explanation);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

ExportActions::Exhibit ExportActions::exhibit() const {
    auto shown = current();
    if (!shown) throw InputError("There is no design yet: let it form, or draw one");
    return std::move(*shown);
}

void ExportActions::addScore(Exhibit& shown) const {
    const auto result = score(shown.material, shown.scene);
    if (!result) throw InputError("The picture was not written, because its design was not scored");
    shown.subtitle = QString::fromStdString(
        runSubtitle(*shown.numbers, shown.scene.symmetry, &result->assessment));
    shown.floating = result->assessment.floating;
}

std::vector<std::uint8_t> ExportActions::pictureBytes(const fs::path& file) const {
    Exhibit shown = exhibit();
    if (shown.numbers) addScore(shown);
    return computeInBackground(parent, tr("Drawing the picture"), [=](BackgroundProgress&) {
        return encodePicture(file, wholeOf(shown.scene), contentOf(shown), scaleOf(shown));
    });
}

void ExportActions::writePicture(const fs::path& file) const {
    writeFile(file, pictureBytes(file));
}

void ExportActions::writeDesign(const fs::path& file) const {
    writeInBackground(tr("Writing the design"), file,
                      [file, shown = exhibit()](BackgroundProgress&) {
                          return encodeDesign(file, wholeOf(shown.material, shown.scene.symmetry));
                      });
}

void ExportActions::writeOutline(const fs::path& file, double elementSize, double thickness) const {
    writeInBackground(tr("Tracing the outline"), file, [=, shown = exhibit()](BackgroundProgress&) {
        const int refinement = shown.material.width / shown.scene.width;
        // The level keeps the volume of a design with greys.
        const double level =
            drawnDesign(shown.material, shown.scene, drawnRefinement(shown.scene, refinement))
                .level;
        const Outline traced = traceOutline(wholeOf(shown.material, shown.scene.symmetry),
                                            refinement, elementSize, level);
        return encodeOutline(file, traced, thickness);
    });
}

void ExportActions::writeAnimation(const fs::path& file) const {
    if (recorder.pictures().empty()) throw InputError("There is no design yet: let it form");
    writeInBackground(
        tr("Drawing the animation"), file,
        [pictures = recorder.pictures()](BackgroundProgress& progress) {
            Animation frames;
            progress.steps = static_cast<int>(pictures.size()) + 1;
            for (const Recorder::Picture& each : pictures) {
                if (progress.isCancelled) return std::vector<std::uint8_t>();
                Scene scene = *each.scene;
                scene.blob = each.blob;
                const Exhibit shown{
                    scene, each.material(),
                    QString::fromStdString(runSubtitle(each.numbers, scene.symmetry))};
                const Scene whole = wholeOf(shown.scene);
                frames.add(drawPicture(whole, contentOf(shown), animationScale(whole)));
                ++progress.done;
            }
            return frames.encodeGif();
        });
}

void ExportActions::writeInBackground(
    const QString& what, const fs::path& file,
    std::function<std::vector<std::uint8_t>(BackgroundProgress&)> encode) const {
    writeFile(file, computeInBackground(parent, what, std::move(encode)));
}

fs::path ExportActions::ask(const QString& title, const QString& filter, const QString& ending,
                            const QString& suffix) {
    const QString directory = QSettings().value(DIRECTORY_KEY, QDir::homePath()).toString();
    QFileDialog dialog(&parent, title, directory, filter);
    const auto shown = current();
    if (shown && !shown->name.isEmpty()) dialog.selectFile(shown->name + suffix + "." + ending);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(ending);
    // A name without an ending gets that of the kind that was chosen.
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& chosen) {
        static const QRegularExpression firstEnding(R"(\*\.(\w+))");
        dialog.setDefaultSuffix(firstEnding.match(chosen).captured(1));
    });
    if (dialog.exec() != QDialog::Accepted) return {};
    return dialog.selectedFiles().front().toStdString();
}

void ExportActions::attempt(const fs::path& file, const std::function<void()>& write) {
    if (file.empty()) return;
    try {
        write();
        const QString name = QString::fromStdString(file.string());
        QSettings().setValue(DIRECTORY_KEY, QFileInfo(name).absolutePath());
        emit exported(tr("Written: %1").arg(name));
    } catch (const std::exception& error) {
        QMessageBox::warning(&parent, tr("The export failed"),
                             QString::fromStdString(error.what()));
    }
}

void ExportActions::exportPicture() {
    const fs::path file = ask(tr("Export a picture"), tr("Pictures (*.png *.svg)"), "png");
    attempt(file, [&] {
        checkEnding(tr("The picture").toStdString(), file, PICTURE_ENDINGS);
        writePicture(file);
    });
}

void ExportActions::copyPicture() {
    try {
        // The bytes of a file, which QImage reads.
        const auto bytes = pictureBytes("picture.png");
        QApplication::clipboard()->setImage(
            QImage::fromData(bytes.data(), static_cast<int>(bytes.size())));
        emit exported(tr("The picture is on the clipboard"));
    } catch (const std::exception& error) {
        QMessageBox::warning(&parent, tr("The picture was not copied"),
                             QString::fromStdString(error.what()));
    }
}

bool ExportActions::mayLeave() const {
    auto shown = current();
    // Without a design, the export itself reports the error.
    if (!shown) return true;
    if (!shown->isScored) {
        const auto result = score(shown->material, shown->scene);
        if (!result) return false;
        shown->problem =
            result->isSupported() ? QString() : sentenceOf(result->assessment.problems.front());
        if (result->isSupported() && !result->assessment.floating.empty())
            shown->problem = sentenceOf(result->assessment.floating);
    }
    if (shown->problem.isEmpty()) return true;
    return QMessageBox::warning(
               &parent, tr("Export a broken part?"),
               tr("The design would not hold as drawn. %1 Export it anyway?").arg(shown->problem),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

void ExportActions::exportDesign() {
    if (!mayLeave()) return;
    const fs::path file =
        ask(tr("Export the design"), tr("Grey pictures (*.png);;Tables (*.csv)"), "png", "-design");
    attempt(file, [&] {
        checkEnding(tr("The design").toStdString(), file, DESIGN_ENDINGS);
        writeDesign(file);
    });
}

std::optional<double> ExportActions::askElementSize(const Scene& whole) {
    return askLength(
        parent, tr("Size of an element"),
        [&](double size) {
            return tr("Edge of an element in millimetres:\n\nThe plate becomes %1 × %2 mm. The "
                      "scene keeps the size: change it in the panel Scene.")
                .arg(placeText(size * whole.width), placeText(size * whole.height));
        },
        Scene().elementSize);
}

void ExportActions::exportOutline() {
    if (!mayLeave()) return;
    const fs::path file =
        ask(tr("Export the outline"), tr("Outlines (*.svg *.dxf);;Solids (*.stl)"), "svg");
    if (file.empty()) return;
    const auto shown = current();
    const Scene whole = shown ? wholeOf(shown->scene) : Scene();
    const double present = shown ? shown->scene.elementSize : Scene().elementSize;
    // A scene with a size of its own has been asked before.
    const auto size = present == Scene().elementSize ? askElementSize(whole) : present;
    if (!size) return;
    if (*size != present) emit elementSizeGiven(*size);
    const int side = std::max(1, std::min(whole.width, whole.height));
    std::optional<double> thickness = USUAL_THICKNESS * side * *size;
    if (fileEnding(file) == ".stl")
        thickness = askLength(
            parent, tr("Thickness"),
            [](double) { return tr("Thickness of the plate in millimetres:"); }, *thickness);
    if (!thickness) return;
    attempt(file, [&] {
        checkEnding(tr("The outline").toStdString(), file, OUTLINE_ENDINGS);
        writeOutline(file, *size, *thickness);
    });
}

void ExportActions::exportAnimation() {
    const fs::path file = ask(tr("Export an animation"), tr("Animations (*.gif)"), "gif");
    attempt(file, [&] {
        checkEnding(tr("The animation").toStdString(), file, {".gif"});
        writeAnimation(file);
    });
}
