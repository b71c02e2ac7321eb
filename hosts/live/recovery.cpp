#include "recovery.h"

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <array>
#include <cerrno>
#include <exception>

#include "export/scene_file.h"
#include "format/scene_writer.h"
#include "packed_field.h"
#include "saved_variants.h"
#include "variant_strip.h"

using namespace voxam;
namespace fs = std::filesystem;

namespace {

constexpr int DELAY = 5000;  // ms after the last edit
constexpr const char* PREFIX = "recovery-";
constexpr const char* SCENE_KEY = "scene";
constexpr const char* ORIGINAL_KEY = "original";
constexpr const char* DESIGN_KEY = "design";
constexpr const char* VARIANTS_KEY = "variants";

// A handler may do little more than write a byte; the loop of events reads it.
std::array<int, 2> signalPipe = {-1, -1};

void tellOfSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto written = write(signalPipe[0], &byte, sizeof byte);
}

QDir directory() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
}

bool isRunning(qint64 process) {
    return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

/// Throws InputError if the file was cut off in the middle of writing, or is of another version.
Recovery::Found readKept(const fs::path& file, const QJsonObject& kept) {
    const fs::path original = kept[ORIGINAL_KEY].toString().toStdString();
    Recovery::Found found{file, original,
                          parseScene(kept[SCENE_KEY].toString().toStdString(), original),
                          std::nullopt, std::nullopt};
    if (kept.contains(DESIGN_KEY))
        found.design = unpacked(kept[DESIGN_KEY].toString(), found.scene, file);
    if (kept.contains(VARIANTS_KEY))
        found.variants = variantsFrom(kept[VARIANTS_KEY].toString().toUtf8(), file);
    return found;
}

}  // namespace

Recovery::Recovery(Document& edited) : document(edited) {
    delay.setSingleShot(true);
    delay.setInterval(DELAY);
    connect(&delay, &QTimer::timeout, this, &Recovery::keep);
    connect(&document, &Document::sceneChanged, this, &Recovery::follow);
    connect(&document, &Document::fileChanged, this, &Recovery::follow);
}

Recovery::~Recovery() { QFile::remove(QString::fromStdString(file().string())); }

fs::path Recovery::file() {
    const QString name = PREFIX + QString::number(QCoreApplication::applicationPid()) + ".json";
    return directory().filePath(name).toStdString();
}

void Recovery::setVariants(const VariantStrip& strip) {
    variants = &strip;
    connect(&strip, &VariantStrip::modificationChanged, this, &Recovery::follow);
}

void Recovery::follow() {
    if (hasUnsaved(document, variants)) {
        if (!delay.isActive()) delay.start();
        return;
    }
    delay.stop();
    QFile::remove(QString::fromStdString(file().string()));
}

void Recovery::keep() {
    delay.stop();
    if (!hasUnsaved(document, variants) || !directory().mkpath(".")) return;
    QJsonObject kept = {{ORIGINAL_KEY, QString::fromStdString(document.file().string())},
                        {SCENE_KEY, QString::fromStdString(sceneText(*document.whole()))}};
    if (const auto seen = design()) kept[DESIGN_KEY] = packed(*seen);
    if (variants != nullptr && variants->isModified())
        kept[VARIANTS_KEY] = QString::fromUtf8(textOf(variants->variants()));
    QSaveFile target(QString::fromStdString(file().string()));
    // Where nothing can be written, the document itself is still there.
    if (!target.open(QIODevice::WriteOnly)) return;
    target.write(QJsonDocument(kept).toJson());
    target.commit();
    rememberDrawings(document, variants);
}

std::optional<Recovery::Found> Recovery::find() {
    const auto files =
        directory().entryInfoList({QString(PREFIX) + "*.json"}, QDir::Files, QDir::Time);
    for (const QFileInfo& info : files) {
        const qint64 process = info.completeBaseName().mid(qstrlen(PREFIX)).toLongLong();
        if (process <= 0 || isRunning(process)) continue;
        QFile source(info.filePath());
        if (!source.open(QIODevice::ReadOnly)) continue;
        try {
            return readKept(info.filePath().toStdString(),
                            QJsonDocument::fromJson(source.readAll()).object());
        } catch (const std::exception&) {
            source.remove();
        }
    }
    return std::nullopt;
}

void Recovery::forget(const Found& found) {
    QFile::remove(QString::fromStdString(found.kept.string()));
}

void Recovery::endOnSignals() {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe.data()) != 0)
        return;
    auto* notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        keep();
        // Without the destructors that would remove the file again.
        _exit(0);
    });
    struct sigaction action = {};
    action.sa_handler = tellOfSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) sigaction(number, &action, nullptr);
}
