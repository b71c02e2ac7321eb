#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QtTest>
#include <fstream>

#include "dialog_answers.h"
#include "export/scene_file.h"
#include "live_fixture.h"
#include "number_text.h"
#include "problems.h"
#include "program.h"
#include "saved_design.h"
#include "saved_variants.h"
#include "settling.h"

namespace fs = std::filesystem;

/// The window after a design has settled, and the files that outlast the window.
class RestTest : public QObject {
    Q_OBJECT

private slots:
    void aSettledDesignRestsAndSaysWhatTheProgramSays() {
        LiveFixture live(LiveFixture::smallScene());
        QCOMPARE(live.run().state(), RunState::FORMING);
        QVERIFY(live.settle());
        const int iteration = live.run().frame().numbers.iteration;
        QTest::qWait(300);
        QCOMPARE(live.run().frame().numbers.iteration, iteration);
        const fs::path file = path("small.json");
        live.bench().document.save(file);
        const auto program = runProgram({"optimise", QString::fromStdString(file.string()),
                                         "--json", "--iterations", QString::number(iteration)});
        const QJsonObject drawn =
            QJsonDocument::fromJson(program.out.toUtf8()).object()["asDrawn"].toObject();
        const QString line = live.window.plateStage().resultLine().text();
        QVERIFY2(line.contains(numberText(drawn["compliance"].toDouble(), 6)), qPrintable(line));
        QVERIFY2(line.contains(percentText(drawn["volume"].toDouble())), qPrintable(line));
        // An edit wakes it, and so does the wish to go on.
        live.bench().edit("Volume", [](Scene& scene) { scene.volumeFraction = 0.4; });
        QCOMPARE(live.run().state(), RunState::FORMING);
        QVERIFY(live.settle());
        const int settledAt = live.run().frame().numbers.iteration;
        QVERIFY(live.takeTool("Space"));
        QVERIFY(live.reach(settledAt + 5));
        QVERIFY(live.takeTool("Space"));
        QCOMPARE(live.run().state(), RunState::PAUSED);
    }

    void aRunThatStillChangesGivesUp() {
        const auto iterationsToRest = [](Settling& settling, double change) {
            Frame frame;
            for (int i = 1; i <= 1000; ++i) {
                frame.numbers.compliance = 100 + change * i;
                settling.add(frame, 0);
                if (settling.isSettled()) return i;
            }
            return 0;
        };
        Settling settling;
        QCOMPARE(iterationsToRest(settling, 0), 30);
        QVERIFY(!settling.hasGivenUp());
        // Play lets it go on for as many again.
        for (int i = 0; i < 2; ++i) {
            settling.restart();
            QCOMPARE(iterationsToRest(settling, 1), 500);
            QVERIFY(settling.hasGivenUp());
        }
    }

    void aTimelineIsPlayedToItsEndBeforeTheRunRests() {
        Scene scene = LiveFixture::smallScene();
        Change late;
        late.iteration = 150;
        late.keys = {"volumeFraction"};
        late.settings.volumeFraction = 0.3;
        scene.timeline = {late};
        LiveFixture live(scene);
        QVERIFY(live.settle());
        QVERIFY(live.run().frame().numbers.iteration > late.iteration);
        QVERIFY(live.run().frame().numbers.volume < 0.4);
    }

    void aDocumentIsReopenedAsItWasSeen() {
        const fs::path file = path("seen.json");
        Field seen;
        {
            LiveFixture live(LiveFixture::smallScene());
            QVERIFY(live.reach(12));
            live.run().setPlaying(false);
            live.bench().document.save(file);
            QVERIFY(live.window.open(file));
            QVERIFY(live.reach(12));
            live.run().setPlaying(false);
            seen = live.run().frame().material;
            QVERIFY(live.takeTool("Ctrl+S"));
            QVERIFY(fs::exists(designFileOf(file)));
        }
        LiveFixture live("minimal.json");
        QVERIFY(live.window.open(file));
        QCOMPARE(live.run().state(), RunState::AS_KEPT);
        QVERIFY(live.run().frame().material == seen);  // although the greys are rounded
        QTRY_VERIFY_WITH_TIMEOUT(live.window.plateStage().resultLine().text().contains("as drawn"),
                                 60000);
        live.window.exporter().writeDesign(path("again.csv"));
        QVERIFY(fs::exists(path("again.csv")));
        // An edit lets it form.
        live.bench().edit("Volume", [](Scene& scene) { scene.volumeFraction = 0.4; });
        QVERIFY(live.reach(2));
        // A design that is older than its scene shows something else.
        fs::last_write_time(designFileOf(file), fs::last_write_time(file) - std::chrono::hours(1));
        QVERIFY(!designBeside(file, live.scene()));
    }

    void aSavedDesignIsThereAfterADrawing() {
        const fs::path file = path("both.json");
        Field seen;
        {
            LiveFixture live(LiveFixture::smallScene());
            live.window.setDrawing(true);
            live.drag(live.at(2, 2), live.at(20, 8));
            live.window.setDrawing(false);
            QVERIFY(live.scene().densities);
            QVERIFY(live.settle());
            seen = live.run().frame().material;
            live.bench().document.save(file);
            // The design is saved from either mode.
            live.window.setDrawing(true);
            QVERIFY(live.takeTool("Ctrl+S"));
        }
        LiveFixture live("minimal.json");
        QVERIFY(live.window.open(file));
        QVERIFY(live.run().isDrawing());
        live.window.setDrawing(false);
        QCOMPARE(live.run().state(), RunState::AS_KEPT);
        QVERIFY(live.run().frame().material == seen);
    }

    void damagedFilesAreReportedAndSetAside() {
        const fs::path file = path("torn.json");
        LiveFixture live(LiveFixture::smallScene());
        live.bench().document.save(file);
        QVERIFY(live.settle());
        QVERIFY(live.takeTool("Ctrl+S"));
        const std::string half = bytesOf(designFileOf(file)).substr(0, 100);
        std::ofstream(designFileOf(file), std::ios::binary) << half;
        const MessageAnswer answer(QMessageBox::Ok);
        QVERIFY(live.window.open(file));
        QVERIFY2(answer.text.contains("torn.design.png"), qPrintable(answer.text));
        QVERIFY(live.settle());
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY(designBeside(file, live.scene()));
        QCOMPARE(bytesOf(path("torn.design.png.damaged")), half);
    }

    void whatAnotherProgramWroteIsNotLost() {
        const fs::path file = path("shared.json");
        LiveFixture live(LiveFixture::smallScene());
        live.bench().document.save(file);
        QVERIFY(live.window.open(file));
        live.drag(live.at(24, 6), live.at(24, 3));
        std::ofstream(file, std::ios::app) << "\n// Mine.\n";
        MessageAnswer answer(QMessageBox::Cancel);
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY2(answer.text.contains("Another program"), qPrintable(answer.text));
        QVERIFY(bytesOf(file).ends_with("// Mine.\n"));
        QVERIFY(live.bench().document.isModified());
    }

    void whatAnotherWindowKeptIsNotLost() {
        const fs::path file = path("twice.json");
        LiveFixture live(LiveFixture::smallScene());
        live.bench().document.save(file);
        QVERIFY(live.window.open(file));
        QVERIFY(live.settle());
        for (int own = 0; own < 2; ++own) {
            QVERIFY(live.takeTool("Ctrl+K"));
            QVERIFY(live.takeTool("Ctrl+S"));
        }
        QVERIFY(live.takeTool("Ctrl+K"));
        for (const fs::path& beside : {designFileOf(file), variantsFileOf(file)})
            std::ofstream(beside, std::ios::app) << "other";
        MessageAnswer answer(QMessageBox::Cancel);
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY2(answer.text.contains("twice.design.png, twice.variants"), qPrintable(answer.text));
        QVERIFY(bytesOf(variantsFileOf(file)).ends_with("other"));
    }

    void editsAndVariantsOutliveTheProgram() {
        const fs::path file = path("safe.json");
        Field design;
        {
            LiveFixture live(LiveFixture::smallScene());
            Recovery recovery(live.bench().document);
            recovery.setVariants(live.window.variants());
            recovery.setDesignSource([&] { return live.run().frame().material; });
            recovery.keep();
            QVERIFY(!fs::exists(Recovery::file()));  // nothing to keep
            live.drag(live.at(24, 6), live.at(24, 3));
            QVERIFY(live.settle());
            QVERIFY(live.takeTool("Ctrl+K"));
            design = live.run().frame().material;
            recovery.keep();
            leaveBehind();
            const FileAnswer answer(QString::fromStdString(file.string()));
            QVERIFY(live.takeTool("Ctrl+S"));
            QVERIFY(!fs::exists(Recovery::file()));
        }
        {
            MainWindow window;
            MessageAnswer answer(QMessageBox::Yes);
            window.openAny();
            QVERIFY2(answer.text.contains("Recover"), qPrintable(answer.text));
            QCOMPARE(window.workbench().document.scene().loads[0].y, (Range{3, 3}));
            QVERIFY(window.workbench().document.isModified());
            QVERIFY(!fs::exists(leftBehind()));
            QVERIFY(window.liveRun().frame().material == design);
            QCOMPARE(window.variants().variants().size(), std::size_t{1});
            QVERIFY(window.variants().variants()[0].material == design);
        }
        {
            // Of a file that has variants already.
            LiveFixture live("minimal.json");
            QVERIFY(live.window.open(file));
            Recovery recovery(live.bench().document);
            recovery.setVariants(live.window.variants());
            live.window.variants().add(live.window.variants().variants()[0]);
            recovery.keep();
            leaveBehind();
        }
        MainWindow window;
        MessageAnswer answer(QMessageBox::Yes);
        window.openAny();
        QVERIFY(!window.workbench().document.isModified());
        QVERIFY(window.isWindowModified());
        QCOMPARE(window.variants().variants().size(), std::size_t{2});
    }

    void aBrokenPartLeavesOnlyWhenAsked() {
        Scene scene = LiveFixture::smallScene();
        scene.densities = Field(scene.width, scene.height);
        for (int y = 5; y < 7; ++y)
            for (int x = 0; x < scene.width; ++x) scene.densities->at(x, y) = 1;
        scene.densities->at(12, 0) = 1;
        LiveFixture live(scene);
        QTRY_VERIFY_WITH_TIMEOUT(live.window.drawingMode().score().has_value(), 60000);
        MessageAnswer answer(QMessageBox::No);
        for (QAction* action : live.window.exporter().actions())
            if (action->text().contains("DXF")) action->trigger();
        QVERIFY2(answer.text.contains("No support holds 1 part"), qPrintable(answer.text));
    }

    void numbersAreForPeopleAndFilesAreNot() {
        QCOMPARE(numberText(10216700.0, 6), QLocale().toString(10216700));
        QCOMPARE(numberText(0.0123456), QLocale().toString(0.01235, 'f', 5));
        QVERIFY(!numberText(4.2e15).contains('e'));
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.settle());
        live.window.exporter().writePicture(path("english.png"));
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(percentText(0.3974), QString("39,7\u00a0%"));
        live.window.exporter().writePicture(path("german.png"));
        QLocale::setDefault(before);
        QVERIFY(bytesOf(path("english.png")) == bytesOf(path("german.png")));
    }

    void warningsAreInTheWordsOfTheWindow() {
        for (const char* text :
             {"node x 3, y 4 lies inside the elements that passive.void keeps void",
              "the solid elements are 40 % of the plate, more than the volumeFraction 0.3",
              "5 is above 4 (below a volumeFraction of 0.25): take a finer grid",
              "as drawn, acts on nothing; keep the elements at this load solid: \"passive\": "
              "{\"solid\": [{\"x\": 3, \"y\": 4}]}",
              "some of its nodes may get no material; keep the elements at this load solid: add "
              "{\"x\": [0, 59], \"y\": 46} to passive.solid, and set meshFactor to 2"}) {
            const QString said = sentenceOf({Finding::ERROR, "loads[1]", text, std::nullopt});
            QVERIFY2(said.startsWith("Load 2: "), qPrintable(said));
            for (const char* key : {"passive", "volumeFraction", "\"", "{", "0.3", "0.25"})
                QVERIFY2(!said.contains(key), qPrintable(said));
        }
    }

private:
    // No process has this number.
    static fs::path leftBehind() {
        return Recovery::file().parent_path() / "recovery-999999999.json";
    }
    static void leaveBehind() {
        fs::copy_file(Recovery::file(), leftBehind(), fs::copy_options::overwrite_existing);
    }

    fs::path path(const char* name) const {
        return fs::path(directory.path().toStdString()) / name;
    }

    QTemporaryDir directory;
};

QObject* makeRestTest() { return new RestTest; }
#include "rest_test.moc"
