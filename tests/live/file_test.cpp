#include <QAbstractButton>
#include <QMessageBox>
#include <QProcess>
#include <QTimer>
#include <QtTest>
#include <fstream>
#include <random>

#include "design_file.h"
#include "live_fixture.h"
#include "scene_writer.h"

namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Answers the next message box, and keeps what it said.
class MessageAnswer {
public:
    explicit MessageAnswer(QMessageBox::StandardButton button) {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) return;
            text = box->text();
            timer.stop();
            box->button(button)->click();
        });
        timer.start();
    }

    QString text;

private:
    QTimer timer;
};

}  // namespace

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
        QProcess program;
        program.start(VOXAM_PROGRAM, {"optimise", QString::fromStdString(file.string()),
                                      "--iterations", QString::number(count), "--design", design});
        QVERIFY(program.waitForFinished(60000));
        QCOMPARE(program.exitCode(), 0);
        const Field theirs =
            readDesign(design.toStdString(), live.scene().width, live.scene().height);
        const Frame& ours = live.run().frame();
        QCOMPARE(ours.columns, theirs.width);
        for (std::size_t i = 0; i < ours.picture.size(); ++i)
            QCOMPARE(1 - ours.picture[i], theirs.values[i]);
    }

    void aWrongFileIsNamedAndNothingIsLost() {
        LiveFixture live("optimise-cantilever.json");
        const std::string before = sceneText(live.scene());
        const fs::path file = fs::path(directory.path().toStdString()) / "wrong.json";
        std::ofstream(file)
            << R"({"grid": {"width": 0, "height": 4}, "loads": [], "supports": []})";
        MessageAnswer answer(QMessageBox::Ok);
        QVERIFY(!live.window.open(file));
        QVERIFY2(answer.text.contains("wrong.json") && answer.text.contains("grid.width"),
                 qPrintable(answer.text));
        QCOMPARE(sceneText(live.scene()), before);
        QVERIFY(live.runFor(1));
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

private:
    QTemporaryDir directory;
};

QObject* makeFileTest() { return new FileTest; }
#include "file_test.moc"
