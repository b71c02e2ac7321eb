#include "file_actions.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <algorithm>
#include <cmath>

#include "action_text.h"
#include "background.h"
#include "checks/assessment.h"
#include "checks/checks.h"
#include "export/design_file.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "icons.h"
#include "number_text.h"
#include "problems.h"
#include "recovery.h"
#include "saved_design.h"
#include "saved_variants.h"
#include "scene_edits.h"
#include "scene_places.h"
#include "shipped_text.h"
#include "variant_strip.h"

using namespace voxam;

namespace {

constexpr int MAX_RECENT = 10;
constexpr const char* RECENT_KEY = "recentFiles";
constexpr const char* DIRECTORY_KEY = "sceneDirectory";
constexpr const char* IMPORT_DIRECTORY_KEY = "importDirectory";

QString sceneFilter() { return QObject::tr("Scenes (*.json);;All files (*)"); }

QString pathText(const std::filesystem::path& file) {
    return QString::fromStdString(file.string());
}

/// A text as a file name that every system accepts.
QString safeName(QString text) {
    constexpr qsizetype longest = 80;
    static const QRegularExpression unsafe(R"([\x00-\x1f\x7f/\\:*?"<>|.]+)");
    return text.replace(unsafe, " ").simplified().left(longest).trimmed();
}

std::filesystem::path pathOf(const QString& name) { return name.toStdString(); }

/// What an optimiser needs and a scene for a score leaves out.
constexpr double DEFAULT_VOLUME_FRACTION = 0.4;

/// For a scene without one: as much as its design has, in whole tenths of a percent.
double volumeFor(const Scene& scene) {
    if (!scene.densities) return DEFAULT_VOLUME_FRACTION;
    constexpr double tenths = 1000;
    return std::clamp(std::ceil(tenths * mean(*scene.densities) - 1e-6) / tenths,
                      Scene::MIN_VOLUME_FRACTION, 1.0);
}

struct ReadScene {
    Scene scene;
    std::optional<Field> design;   ///< next to the scene
    std::deque<Variant> variants;  ///< next to the scene
    std::string designFault;       ///< why it cannot be read; empty if it can
    std::string variantsFault;     ///< why they cannot be read; empty if they can
};

/// Reads the design next to a scene.
void readDesignBeside(const std::filesystem::path& file, ReadScene& read) {
    try {
        read.design = designBeside(file, read.scene);
    } catch (const InputError& error) {
        read.designFault = error.what();
    }
}

/// Reads the variants next to a scene.
void readVariants(const std::filesystem::path& file, ReadScene& read) {
    try {
        read.variants = variantsBeside(file);
    } catch (const InputError& error) {
        read.variantsFault = error.what();
    }
}

/// The name under which an unreadable file stays beside the scene.
std::filesystem::path nameAside(const std::filesystem::path& file) {
    std::error_code error;
    for (int number = 1;; ++number) {
        auto name = file;
        name += number == 1 ? ".damaged" : ".damaged" + std::to_string(number);
        if (!std::filesystem::exists(name, error)) return name;
    }
}

/// Reads a scene that can be optimised here.
ReadScene readWhole(const std::filesystem::path& file) {
    ReadScene read{readScene(file), std::nullopt, {}, {}, {}};
    Scene& scene = read.scene;
    if (scene.volumeFraction == 0) scene.volumeFraction = volumeFor(scene);
    // It would take the program down, with whatever is open.
    for (const Finding& finding : findTooLarge(scene))
        throw InputError(file.string() + ": " + lineOf(finding));
    readDesignBeside(file, read);
    readVariants(file, read);
    return read;
}

/// Whether a file contains this scene.
bool isSavedAs(const std::filesystem::path& file, const Scene& scene) {
    try {
        return !file.empty() && readWhole(file).scene == scene;
    } catch (const std::exception&) {
        return false;
    }
}

/// Something to begin with: it can be optimised, and everything in it can be moved and erased.
Scene plainScene() {
    Scene scene;
    scene.title = QObject::tr("Untitled").toStdString();
    scene.width = 60;
    scene.height = 40;
    scene.subdivision = scene.meshFactor = 2;
    scene.volumeFraction = DEFAULT_VOLUME_FRACTION;
    scene.loadCasesInUse = {0};
    scene.loads = {{{60, 60}, {20, 20}, 0, 1, 0}};
    scene.supports = {{{0, 0}, {0, 40}, true, true}};
    return scene;
}

}  // namespace

FileActions::FileActions(Document& edited, QWidget& window)
    : newAction(new QAction(tr("&New"), this)),
      openAction(new QAction(icon(Glyph::OPEN), tr("&Open..."), this)),
      saveAction(new QAction(icon(Glyph::SAVE), tr("&Save"), this)),
      saveAsAction(new QAction(tr("Save &as..."), this)),
      importAction(new QAction(tr("&Import a design..."), this)),
      recentMenu(new QMenu(tr("Open &recent"), &window)),
      document(edited),
      parent(window) {
    newAction->setShortcut(QKeySequence::New);
    explain(*newAction, tr("A plate that is held at its left edge, to begin with"));
    connect(newAction, &QAction::triggered, this, &FileActions::makeNew);
    openAction->setShortcut(QKeySequence::Open);
    explain(*openAction, tr("Open a scene"));
    saveAction->setShortcut(QKeySequence::Save);
    explain(*saveAction, tr("Save the scene"));
    saveAsAction->setShortcut(QKeySequence("Ctrl+Shift+S"));
    explain(*saveAsAction, tr("Save the scene under another name"));
    explain(*importAction,
            tr("Draw on from a design of this plate, a grey PNG or a CSV file, and keep it as a "
               "variant"));
    connect(importAction, &QAction::triggered, this, &FileActions::importDesign);
    connect(openAction, &QAction::triggered, this, &FileActions::chooseAndOpen);
    connect(saveAction, &QAction::triggered, this, &FileActions::save);
    connect(saveAsAction, &QAction::triggered, this, &FileActions::saveAs);
    connect(recentMenu, &QMenu::aboutToShow, this, &FileActions::fillRecentMenu);
}

bool FileActions::open(const std::filesystem::path& file) { return mayDiscard() && load(file); }

bool FileActions::load(const std::filesystem::path& file) {
    try {
        ReadScene read =
            computeInBackground(parent, tr("Reading the scene"),
                                [file](BackgroundProgress&) { return readWhole(file); });
        document.open(std::move(read.scene), file);
        stampFiles();
        damaged.clear();
        remember(file);
        emit loaded(read.design, read.variants);
        reportDamage(read.designFault, read.variantsFault);
        return true;
    } catch (const std::exception& error) {
        QMessageBox::warning(&parent, tr("The scene cannot be opened"), faultOf(error));
        return false;
    }
}

void FileActions::reportDamage(const std::string& ofDesign, const std::string& ofVariants) {
    const auto report = [this](const QString& title, const std::string& fault,
                               const std::filesystem::path& file) {
        if (fault.empty()) return;
        damaged.push_back(file);
        QMessageBox::warning(
            &parent, title,
            QString::fromStdString(fault) + "\n\n" +
                tr("The file stays as it is. Before you save over it, it is renamed to %1.")
                    .arg(pathText(nameAside(file).filename())));
    };
    report(tr("The saved design cannot be read"), ofDesign, designFileOf(document.file()));
    report(tr("The variants cannot be read"), ofVariants, variantsFileOf(document.file()));
}

void FileActions::setAside(const std::filesystem::path& file) {
    if (std::erase(damaged, file) == 0) return;
    std::error_code error;
    if (std::filesystem::exists(file, error)) std::filesystem::rename(file, nameAside(file));
}

bool FileActions::mayDiscard() {
    if (!isModified()) return true;
    // Users know scenes from the gallery by their titles.
    const QString title = shippedText(document.scene().title);
    QMessageBox question(QMessageBox::Question, tr("Save changes?"),
                         tr("%1 has changes that are not saved.")
                             .arg(title.isEmpty() ? document.displayName() : title),
                         QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &parent);
    // Qt's own texts have no letters to press with Alt.
    question.button(QMessageBox::Save)->setText(tr("&Save"));
    question.button(QMessageBox::Discard)->setText(tr("&Discard"));
    question.button(QMessageBox::Cancel)->setText(tr("&Cancel"));
    question.setDefaultButton(QMessageBox::Save);
    const int answer = question.exec();
    if (answer == QMessageBox::Save) return save();
    return answer == QMessageBox::Discard;
}

void FileActions::setVariants(VariantStrip& strip) {
    variants = &strip;
    connect(&strip, &VariantStrip::modificationChanged, this, &FileActions::modificationChanged);
    connect(&document, &Document::fileChanged, this, &FileActions::modificationChanged);
}

bool FileActions::isModified() const { return hasUnsaved(document, variants); }

std::filesystem::path FileActions::lastFile() const {
    const QStringList recent = QSettings().value(RECENT_KEY).toStringList();
    if (recent.isEmpty()) return {};
    std::error_code error;
    const auto file = pathOf(recent.front());
    return std::filesystem::is_regular_file(file, error) ? file : std::filesystem::path();
}

void FileActions::makeNew() {
    if (!mayDiscard()) return;
    document.open(plainScene(), {});
    stampFiles();
    damaged.clear();
    emit loaded(std::nullopt, {});
}

bool FileActions::recover(Recovery& own) {
    const auto found = Recovery::find();
    if (!found) return false;
    const QString name =
        found->original.empty() ? tr("A new scene") : pathText(found->original.filename());
    const auto answer = QMessageBox::question(
        &parent, tr("Recover changes?"),
        tr("%1 has changes from another run of Voxam Live, which ended before they were saved. "
           "Recover them?")
            .arg(name),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
    if (answer != QMessageBox::Yes) {
        Recovery::forget(*found);
        return false;
    }
    openRecovered(*found);
    own.keep();  // before the old file goes, so that a crash loses nothing
    Recovery::forget(*found);
    return true;
}

void FileActions::openRecovered(const Recovery::Found& found) {
    ReadScene next{found.scene, found.design, {}, {}, {}};
    if (next.scene.volumeFraction == 0) next.scene.volumeFraction = volumeFor(next.scene);
    if (found.variants)
        next.variants = *found.variants;
    else if (!found.original.empty())
        readVariants(found.original, next);
    // If only variants were unsaved, the scene itself is not modified.
    if (isSavedAs(found.original, next.scene))
        document.open(std::move(next.scene), found.original);
    else
        document.recover(std::move(next.scene), found.original);
    stampFiles();
    damaged.clear();
    emit loaded(next.design, next.variants);
    if (found.variants && variants != nullptr) variants->setModified(true);
    reportDamage({}, next.variantsFault);
}

void FileActions::importDesign() {
    // Without a folder, Qt starts in the folder of the last dialog, even if that dialog failed.
    const QString start = QSettings().value(IMPORT_DIRECTORY_KEY, QDir::homePath()).toString();
    const QString name = QFileDialog::getOpenFileName(&parent, tr("Import a design"), start,
                                                      tr("Designs (*.png *.csv)"));
    if (name.isEmpty()) return;
    try {
        Scene next = document.scene();
        const Field design = readDesign(pathOf(name), next);
        // The score compares designs in black and white only.
        const int refinement = drawnRefinement(next, refinementOf(design, next));
        const int before = next.densities ? refinementOf(*next.densities, next) : 1;
        const DrawnDesign drawn = drawnDesign(design, next, refinement);
        next.densities = drawn.design;
        keepAreas(*next.densities, next);
        document.edit(tr("Import design"), std::move(next));
        QSettings().setValue(IMPORT_DIRECTORY_KEY, QFileInfo(name).absolutePath());
        emit imported(pathText(pathOf(name).filename()));
        if (mean(drawn.design) == 0 && mean(design) > 0)
            emit told(tr("The drawing is empty: cells of this design become solid from a density "
                         "of %1 on, and no cell is so dense.")
                          .arg(percentText(drawn.level)));
        else if (refinement != before)
            emit told(tr("The drawing now has %1 × %1 cells per element. The optimiser starts "
                         "afresh, and drawings as fine as this have a best score of their own.")
                          .arg(refinement));
    } catch (const std::exception& error) {
        QMessageBox::warning(&parent, tr("The design cannot be imported"),
                             QString::fromStdString(error.what()));
    }
}

std::optional<FileActions::FileStamp> FileActions::stampOf(const std::filesystem::path& file) {
    std::error_code error;
    FileStamp found;
    found.time = std::filesystem::last_write_time(file, error);
    if (error) return std::nullopt;
    found.size = std::filesystem::file_size(file, error);
    return error ? std::nullopt : std::optional(found);
}

std::array<std::filesystem::path, 3> FileActions::filesOf(const std::filesystem::path& target) {
    return {target, designFileOf(target), variantsFileOf(target)};
}

void FileActions::stampFiles() {
    const auto files = filesOf(document.file());
    std::transform(files.begin(), files.end(), stamps.begin(), stampOf);
}

bool FileActions::mayReplace(const std::filesystem::path& target) {
    if (target != document.file() || !stamps[0]) return true;
    const auto files = filesOf(target);
    const std::array<bool, 3> isWritten = {true, design().has_value(),
                                           variants != nullptr && variants->isModified()};
    QStringList changed;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto now = stampOf(files[i]);
        if (isWritten[i] && now && now != stamps[i]) changed += pathText(files[i].filename());
    }
    if (changed.isEmpty()) return true;
    const auto answer = QMessageBox::warning(
        &parent, tr("The file has changed"),
        tr("Another program has changed %1 since it was opened here. Save anyway, and lose those "
           "changes? Save as... another file to keep both.")
            .arg(changed.join(", ")),
        QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
    return answer == QMessageBox::Save;
}

void FileActions::chooseAndOpen() {
    if (!mayDiscard()) return;
    const QString start = document.file().empty() ? pathText(shippedScenes())
                                                  : pathText(document.file().parent_path());
    const QString name =
        QFileDialog::getOpenFileName(&parent, tr("Open a scene"), start, sceneFilter());
    if (!name.isEmpty()) load(pathOf(name));
}

bool FileActions::save() {
    // A shipped scene is not to be overwritten by a shortcut that everybody's fingers know.
    if (document.file().empty() || isShipped(document.file())) return saveAs();
    return write(document.file());
}

bool FileActions::mayDropComments(const std::filesystem::path& target) {
    const bool isKept = target == document.file() && !document.isModified();
    if (isKept || !hasComments(target)) return true;
    const auto answer =
        QMessageBox::warning(&parent, tr("Save without the comments?"),
                             tr("%1 has comments, which would be lost. "
                                "Save as... another file to keep them.")
                                 .arg(pathText(target.filename())),
                             QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
    return answer == QMessageBox::Save;
}

bool FileActions::saveAs() {
    const auto& file = document.file();
    // The ending by which the system recognises scenes.
    const QString ending = "voxam.json";
    const QString title = safeName(shippedText(document.scene().title));
    const QString name = title.isEmpty() ? document.displayName().section('.', 0, 0) : title;
    const QDir directory(QSettings().value(DIRECTORY_KEY, QDir::homePath()).toString());
    const QString start =
        file.empty() || isShipped(file) ? directory.filePath(name + "." + ending) : pathText(file);
    QFileDialog dialog(&parent, tr("Save the scene"), start, sceneFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(ending);
    dialog.selectFile(start);
    if (dialog.exec() != QDialog::Accepted) return false;
    return write(pathOf(dialog.selectedFiles().front()));
}

bool FileActions::write(const std::filesystem::path& target) {
    if (!mayReplace(target) || !mayDropComments(target)) return false;
    try {
        const bool isMoved = target != document.file();
        document.save(target);
        rememberDrawings(document, variants);
        if (const auto seen = design()) {
            setAside(designFileOf(target));
            writeDesignBeside(target, *seen);
        }
        // Do not overwrite a file of variants that could not be read.
        if (variants != nullptr && (isMoved || variants->isModified())) {
            setAside(variantsFileOf(target));
            writeVariantsBeside(target, variants->variants());
            variants->setModified(false);
        }
        if (isMoved) damaged.clear();
        stampFiles();
        remember(target);
        return true;
    } catch (const std::exception& error) {
        QMessageBox::warning(&parent, tr("The scene cannot be saved"),
                             QString::fromStdString(error.what()));
        return false;
    }
}

void FileActions::remember(const std::filesystem::path& file) {
    QSettings settings;
    QStringList recent = settings.value(RECENT_KEY).toStringList();
    std::error_code error;
    const auto whole = std::filesystem::absolute(file, error);
    const QString name = pathText(error ? file : whole.lexically_normal());
    if (!isShipped(file)) settings.setValue(DIRECTORY_KEY, QFileInfo(name).absolutePath());
    recent.removeAll(name);
    recent.prepend(name);
    settings.setValue(RECENT_KEY, recent.mid(0, MAX_RECENT));
}

void FileActions::fillRecentMenu() {
    recentMenu->clear();
    for (const QString& name : QSettings().value(RECENT_KEY).toStringList()) {
        QAction* action = recentMenu->addAction(name);
        connect(action, &QAction::triggered, this, [this, name] { open(pathOf(name)); });
    }
    if (recentMenu->isEmpty()) recentMenu->addAction(tr("No files yet"))->setEnabled(false);
}
