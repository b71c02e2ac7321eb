#include <sys/stat.h>

#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <QTabWidget>
#include <QtTest>
#include <fstream>
#include <random>
#include <set>

#include "dialog_answers.h"
#include "export/design_file.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/json_value.h"
#include "format/resize.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "gallery.h"
#include "gallery_scenes.h"
#include "live_fixture.h"
#include "program.h"

namespace fs = std::filesystem;

class FileTest : public QObject {
    Q_OBJECT

private slots:
    void aHundredEditsUndoneGiveTheBytesOfTheFileAgain() {
        LiveFixture live("wheel.json");
        const fs::path file = fs::path(directory.path().toStdString()) / "wheel.json";
        live.bench().document.save(file);
        const std::string before = bytesOf(file);
        std::mt19937 random(7);
        const auto place = [&] {
            return live.at(static_cast<double>(random() % 81), static_cast<double>(random() % 81));
        };
        QUndoStack& history = live.bench().document.undoStack();
        const std::vector<const char*> keys = {"V", "L", "S", "X", "Y", "O", "K", "J", "B", "E"};
        while (history.count() < 100) {
            QVERIFY(live.takeTool(keys[random() % keys.size()]));
            live.drag(place(), place());
        }
        QVERIFY(live.bench().document.isModified());
        live.bench().document.save(directory.filePath("edited.json").toStdString());
        QVERIFY(bytesOf(directory.filePath("edited.json").toStdString()) != before);
        while (history.canUndo()) history.undo();
        live.bench().document.save(file);
        QVERIFY(bytesOf(file) == before);
    }

    void whatIsSavedRunsToTheSamePictureInTheProgram() {
        LiveFixture live("bridge-two-cases.json");
        live.run().setPlaying(false);
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(20, 10), live.at(40, 14));
        QVERIFY(live.takeTool("L"));
        live.drag(live.at(30, 30), live.at(30, 36));
        const fs::path file = fs::path(directory.path().toStdString()) / "saved.json";
        live.bench().document.save(file);
        live.run().startAfresh();
        constexpr int count = 12;
        for (int i = 1; i <= count; ++i) {
            live.run().step();
            QVERIFY(live.reach(i));
        }
        const QString design = directory.filePath("design.csv");
        const auto program =
            runProgram({"optimise", QString::fromStdString(file.string()), "--iterations",
                        QString::number(count), "--design", design});
        QVERIFY2(program.status == 0, qPrintable(program.err));
        const Field theirs =
            readDesign(design.toStdString(), live.scene().width, live.scene().height);
        QVERIFY(live.run().frame().material == theirs);
    }

    void aWrongFileIsNamedAndNothingIsLost() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(20, 20), live.at(30, 20));
        const std::string before = sceneText(live.scene());
        const std::vector<std::pair<const char*, QStringList>> wrong = {
            {R"({"grid": {"width": 0, "height": 4}, "loads": [], "supports": []})",
             {"grid.width", "0"}},
            {"{\"grid\": {\n", {"line 2"}},
            {R"({"grid": {"width": 1000, "height": 1000}, "subdivision": 1, "meshFactor": 2,
                 "volumeFraction": 0.4, "lods": [], "loads": [], "supports": []})",
             {"lods", "loads"}},
            {"\x89PNG", {"is a picture", "Import a design"}},
            {"", {}}};
        const fs::path file = fs::path(directory.path().toStdString()) / "wrong.json";
        for (const auto& [text, words] : wrong) {
            std::ofstream(file) << text;
            MessageAnswer answer(QMessageBox::Ok);
            QVERIFY(!live.window.open(file));
            QVERIFY2(answer.text.contains("wrong.json"), qPrintable(answer.text));
            for (const QString& word : words)
                QVERIFY2(answer.text.contains(word), qPrintable(answer.text));
        }
        {
            MessageAnswer answer(QMessageBox::Ok);
            QVERIFY(!live.window.open(directory.path().toStdString()));
            QVERIFY(!answer.text.isEmpty());
        }
        QCOMPARE(sceneText(live.scene()), before);
        QVERIFY(live.bench().document.isModified());
        QVERIFY(live.bench().document.undoStack().canUndo());
        QVERIFY(live.runFor(1));
    }

    void whatCannotBeSavedStaysModified() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(2, 1), live.at(3, 1));
        const FileAnswer naming(directory.filePath("no/such/place.json"));
        MessageAnswer answer(QMessageBox::Ok);
        // A scene that came with the program is saved elsewhere.
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY2(answer.text.contains("place.json"), qPrintable(answer.text));
        QVERIFY(live.bench().document.isModified());
        // A file that replaced a pipe or a device would do harm.
        const std::string pipe = directory.filePath("pipe.json").toStdString();
        QCOMPARE(mkfifo(pipe.c_str(), 0600), 0);
        for (const char* target : {pipe.c_str(), "/dev/null"}) {
            QVERIFY_THROWS_EXCEPTION(InputError, live.bench().document.save(target));
            QVERIFY(!fs::is_regular_file(target));
        }

        const QString good = directory.filePath("good.json");
        const FileAnswer another(good);
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY(!live.bench().document.isModified());
        QVERIFY(readScene(good.toStdString()).passive == live.scene().passive);
    }

    void commentsAreNotDroppedWithoutAWord() {
        LiveFixture live(LiveFixture::smallScene());
        const auto file = directory.filePath("commented.json").toStdString();
        const std::string text = "// As agreed.\n" + sceneText(live.scene());
        std::ofstream(file) << text;
        QVERIFY(live.window.open(file));
        live.drag(live.at(24, 6), live.at(24, 3));
        QVERIFY(live.bench().document.isModified());
        {
            MessageAnswer answer(QMessageBox::Cancel);
            QVERIFY(live.takeTool("Ctrl+S"));
            QVERIFY2(answer.text.contains("comments"), qPrintable(answer.text));
            QCOMPARE(readText(file), text);
        }
        MessageAnswer answer(QMessageBox::Save);
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY(!live.bench().document.isModified());
        QCOMPARE(readText(file), sceneText(live.scene()));
    }

    void aDroppedFileIsOpened() {
        LiveFixture live("minimal.json");
        drop(live.window, {QUrl::fromLocalFile(VOXAM_SCENES "/wheel.json")});
        QCOMPARE(live.scene().title, std::string("Wheel"));
        QVERIFY(live.runFor(1));
        // What is no file is let fall.
        drop(live.window, {QUrl("http://localhost/scene.json")});
        QCOMPARE(live.scene().title, std::string("Wheel"));
        // Changes are asked about before.
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(20, 20), live.at(30, 20));
        const MessageAnswer answer(QMessageBox::Cancel);
        drop(live.window, {QUrl::fromLocalFile(VOXAM_SCENES "/minimal.json")});
        QCOMPARE(live.scene().title, std::string("Wheel"));
    }

    void theGalleryHasAPictureOfEachSceneAndOpensIt() {
        LiveFixture live("minimal.json");
        QStringList titles;
        const DialogAnswer choosing([&](QWidget& dialog) {
            titles.clear();
            for (auto* list : dialog.findChildren<QListWidget*>())
                for (int row = 0; row < list->count(); ++row) {
                    const QImage picture = list->item(row)->icon().pixmap(200, 124).toImage();
                    // They come one by one.
                    if (picture.isNull()) return false;
                    compare(isPlain(picture), false);
                    titles << list->item(row)->text();
                    const bool isToDraw = list->accessibleName().endsWith("Draw");
                    if (isToDraw && titles.back() == "Wheel") choose(dialog, *list, row);
                }
            static_cast<Gallery&>(dialog).accept();
            return true;
        });
        QVERIFY(live.takeTool("Ctrl+G"));
        QCOMPARE(live.scene().title, std::string("Wheel"));
        QVERIFY(live.window.drawingMode().isActive());
        const auto scenes = galleryScenes(VOXAM_SCENES);
        QCOMPARE(static_cast<std::size_t>(titles.size()), scenes.size());
        for (const GalleryScene& scene : scenes) {
            QVERIFY2(scene.level != GalleryLevel::MORE, scene.file.c_str());
            QCOMPARE(scene.title.toStdString(), readScene(scene.file).title);
        }
        // Its missing support can be added at once.
        QVERIFY(live.window.open(VOXAM_SCENES "/unsupported.json"));
        QVERIFY(!live.window.drawingMode().isActive());
    }

    void theLastFilesAreRememberedAndOpened() {
        const QString one = directory.filePath("one.json");
        {
            LiveFixture live("minimal.json");
            live.bench().document.save(one.toStdString());
            QVERIFY(live.window.open(one.toStdString()));
        }
        // One window after the other: a process has one optimiser.
        {
            MainWindow window;
            window.openAny();
            QCOMPARE(window.workbench().document.file().string(), one.toStdString());
        }
        QFile::remove(one);
        MainWindow window;
        window.openAny();
        QVERIFY(window.workbench().document.scene().width > 0);
    }

    void closingAsksBeforeChangesAreLost() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.takeTool("O"));
        live.drag(live.at(20, 20), live.at(30, 20));
        {
            MessageAnswer answer(QMessageBox::Cancel);
            QVERIFY(!live.window.close());
            QVERIFY(live.window.isVisible());
        }
        MessageAnswer answer(QMessageBox::Discard);
        QVERIFY(live.window.close());
    }

    void closingInTheMiddleOfAnIterationIsClean() {
        for (int i = 0; i < 5; ++i) {
            LiveFixture live("optimise-cantilever.json");
            live.bench().editWhole("Grid", [](Scene& scene) { resizeGrid(scene, 150, 100); });
            live.bench().document.undoStack().setClean();
            QVERIFY(live.reach(1));
            QTest::qWait(7 * i);  // somewhere in the next one
            QVERIFY(live.window.close());
        }
    }

private:
    static void drop(MainWindow& window, const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted()) return;
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }

    static void choose(QWidget& dialog, QListWidget& list, int row) {
        auto* levels = dialog.findChild<QTabWidget*>();
        for (int page = 0; page < levels->count(); ++page)
            if (levels->widget(page)->isAncestorOf(&list)) levels->setCurrentIndex(page);
        list.setCurrentRow(row);
    }

    template <typename Value>
    static void compare(Value found, Value expected) {
        QCOMPARE(found, expected);
    }

    static bool isPlain(const QImage& image) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != image.pixel(0, 0)) return false;
        return true;
    }

    QTemporaryDir directory;
};

QObject* makeFileTest() { return new FileTest; }
#include "file_test.moc"
