#include <QImageReader>
#include <QProgressDialog>
#include <QThread>
#include <QXmlStreamReader>
#include <QtTest>
#include <sstream>

#include "background.h"
#include "dialog_answers.h"
#include "drawing/picture.h"
#include "format/input_error.h"
#include "format/scene_writer.h"
#include "live_fixture.h"
#include "program.h"

namespace fs = std::filesystem;

/// What leaves the window, beside what the command-line program writes.
class ExportTest : public QObject {
    Q_OBJECT

private slots:
    void aRunLeavesAsFromTheProgram_data() {
        QTest::addColumn<QString>("scene");
        QTest::newRow("whole") << "bridge-two-cases.json";
        QTest::newRow("half, of which the whole leaves") << "half-beam.json";
    }

    void aRunLeavesAsFromTheProgram() {
        QFETCH(QString, scene);
        LiveFixture live(scene.toStdString());
        stepTo(live, 12);
        QStringList arguments = {"optimise",  VOXAM_SCENES "/" + scene,  "--iterations", "12",
                                 "--picture", file("their-picture.png"), "--thickness",  "5"};
        for (const char* name : {"theirs.csv", "theirs.png"}) arguments += {"--design", file(name)};
        for (const char* name : {"theirs.svg", "theirs.dxf", "theirs.stl"})
            arguments += {"--outline", file(name)};
        QCOMPARE(runProgram(arguments).status, 0);
        const ExportActions& exporter = live.window.exporter();
        for (const char* ending : {".csv", ".png"}) {
            exporter.writeDesign(path("ours", ending));
            QVERIFY2(bytesOf(path("ours", ending)) == bytesOf(path("theirs", ending)), ending);
        }
        for (const char* ending : {".svg", ".dxf", ".stl"}) {
            exporter.writeOutline(path("ours", ending), 1, 5);
            QVERIFY2(bytesOf(path("ours", ending)) == bytesOf(path("theirs", ending)), ending);
        }
        exporter.writePicture(path("picture", ".png"));
        QVERIFY(bytesOf(path("picture", ".png")) == bytesOf(path("their-picture", ".png")));
    }

    void aTimelineIsPlayedAsByTheProgram() {
        LiveFixture live(LiveFixture::smallScene());
        Scene scene = live.scene();
        for (const int iteration : {4, 7}) {
            Change change;
            change.iteration = iteration;
            change.settings.loads = {{{scene.width, scene.width}, {iteration, iteration}, 1, 0, 0}};
            change.keys = {"loads"};
            scene.timeline.push_back(change);
        }
        Change restart;
        restart.iteration = 9;
        restart.settings.volumeFraction = 0.6;
        restart.keys = {"volumeFraction"};
        restart.restart = Restart{false, 1, 1};
        scene.timeline.push_back(restart);
        live.bench().document.open(scene, {});
        live.bench().document.save(path("timeline", ".json"));
        stepTo(live, 11);
        QCOMPARE(live.scene().loads[0].y, (Range{7, 7}));
        QCOMPARE(live.scene().volumeFraction, 0.6);
        live.window.exporter().writeDesign(path("ours", ".csv"));
        const auto program = runProgram({"optimise", file("timeline.json"), "--iterations", "11",
                                         "--design", file("theirs.csv")});
        QVERIFY2(program.status == 0, qPrintable(program.err));
        QVERIFY(bytesOf(path("ours", ".csv")) == bytesOf(path("theirs", ".csv")));
    }

    void aScoredDrawingLeavesAsFromTheProgram() {
        LiveFixture live("cantilever.json");
        QVERIFY(live.window.drawingMode().isActive());
        const auto& score = live.window.drawingMode().score();
        QVERIFY(QTest::qWaitFor([&] { return score.has_value(); }, 60000));
        const QList<QAction*> views = live.window.plateStage().fields().viewActions();
        const QStringList names = {"material", "energy", "stress", "deformed"};
        QCOMPARE(views.size(), names.size());
        for (int i = 0; i < views.size(); ++i) {
            views[i]->trigger();
            QVERIFY(QTest::qWaitFor([&] { return live.run().hasView(*score); }, 60000));
            const auto program =
                runProgram({"score", VOXAM_SCENES "/cantilever.json", "--view", names[i],
                            "--picture", file("theirs.png"), "--outline", file("theirs.dxf")});
            QVERIFY2(program.status == 0, qPrintable(program.err));
            live.window.exporter().writePicture(path("ours", ".png"));
            QVERIFY2(bytesOf(path("ours", ".png")) == bytesOf(path("theirs", ".png")),
                     qPrintable(names[i]));
        }
        live.window.exporter().writeOutline(path("ours", ".dxf"), 1, 1);
        QVERIFY(bytesOf(path("ours", ".dxf")) == bytesOf(path("theirs", ".dxf")));
    }

    void aPictureOfShapesIsWellFormed() {
        LiveFixture live("wheel.json");
        stepTo(live, 2);
        live.window.exporter().writePicture(path("picture", ".svg"));
        QFile svg(file("picture.svg"));
        QVERIFY(svg.open(QIODevice::ReadOnly));
        QXmlStreamReader reader(&svg);
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.name(), QString("svg"));
        while (!reader.atEnd()) reader.readNext();
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    }

    void anAnimationShowsTheLastPictures() {
        LiveFixture live(LiveFixture::smallScene());
        live.run().setPlaying(true);
        QVERIFY(live.reach(5));
        QTest::qWait(400);  // of which a tenth of a second each is kept
        live.run().setPlaying(false);
        live.window.exporter().writeAnimation(path("animation", ".gif"));
        QImageReader reader(file("animation.gif"));
        const PictureLayout layout = pictureLayout(live.scene(), animationScale(live.scene()));
        int frames = 0;
        QImage first;
        QImage last;
        for (QImage image = reader.read(); !image.isNull(); image = reader.read(), ++frames) {
            QCOMPARE(image.size(), QSize(layout.width, layout.height));
            if (frames == 0) first = image;
            last = image;
        }
        QVERIFY2(frames >= 2, qPrintable(QString::number(frames)));
        QVERIFY(first != last);
    }

    void workInTheBackgroundLeavesTheWindowAliveAndCanBeCancelled() {
        QWidget window;
        int beats = 0;
        QTimer heart;
        connect(&heart, &QTimer::timeout, this, [&] {
            if (++beats < 5) return;
            for (QWidget* widget : QApplication::topLevelWidgets())
                if (auto* dialog = qobject_cast<QProgressDialog*>(widget)) emit dialog->canceled();
        });
        heart.start(10);
        std::atomic<bool> hasEnded = false;
        const auto untilCancelled = [&](BackgroundProgress& progress) {
            while (!progress.isCancelled) QThread::msleep(1);
            return hasEnded = true;
        };
        QVERIFY_THROWS_EXCEPTION(InputError,
                                 computeInBackground(window, "Waiting", untilCancelled));
        QTRY_VERIFY(hasEnded);
        QVERIFY(beats >= 5);
        const auto failing = [](BackgroundProgress&) -> int { throw std::domain_error("no"); };
        QVERIFY_THROWS_EXCEPTION(std::domain_error,
                                 computeInBackground(window, "Failing", failing));
    }

    void aFileThatCannotBeWrittenIsNamed() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.settle());
        exportAs(live, "Picture", file("no/such/place.png"), "place.png");
        exportAs(live, "Design", file("design.bmp"), ".csv");
        QVERIFY(!QFile::exists(file("design.bmp")));
        exportAs(live, "Design", file("good.csv"), "");
        QVERIFY(QFile::exists(file("good.csv")));
    }

    void withoutADesignThereIsNothingToExport() {
        MainWindow window;
        QVERIFY_THROWS_EXCEPTION(InputError, window.exporter().writeDesign(path("none", ".csv")));
        QVERIFY_THROWS_EXCEPTION(InputError,
                                 window.exporter().writeAnimation(path("none", ".gif")));
        QVERIFY(!fs::exists(path("none", ".csv")));
    }

private:
    static void stepTo(LiveFixture& live, int iteration) {
        live.run().setPlaying(false);
        live.run().startAfresh();
        for (int i = 1; i <= iteration; ++i) {
            live.run().step();
            QVERIFY(live.reach(i));
        }
    }

    /// By the menu. `complaint` is part of what the window says, or empty.
    static void exportAs(LiveFixture& live, const QString& what, const QString& name,
                         const QString& complaint) {
        const FileAnswer naming(name);
        MessageAnswer reading(QMessageBox::Ok);
        for (QAction* action : live.window.exporter().actions())
            if (action->text().contains(what)) action->trigger();
        QVERIFY2(reading.text.contains(complaint) && reading.text.isEmpty() == complaint.isEmpty(),
                 qPrintable(reading.text));
    }

    QString file(const QString& name) const { return directory.filePath(name); }
    fs::path path(const std::string& name, const std::string& ending) const {
        return fs::path(directory.path().toStdString()) / (name + ending);
    }

    QTemporaryDir directory;
};

QObject* makeExportTest() { return new ExportTest; }
#include "export_test.moc"
