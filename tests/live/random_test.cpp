#include <QSpinBox>
#include <QtTest>
#include <random>

#include "export/scene_file.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "live_fixture.h"

/// Hands that do anything at all.
class RandomTest : public QObject {
    Q_OBJECT

private slots:
    void fiveThousandEventsLeaveASoundWindow() {
        LiveFixture live("minimal.json");
        std::mt19937 random(20240611);
        for (int i = 0; i < 5000; ++i) {
            act(live, random);
            if (i % 10 == 0) QTest::qWait(0);
        }
        live.release({});
        live.window.setDrawing(false);
        // What came of it is still a scene, and the worker still follows.
        const Scene read = parseScene(sceneText(live.scene()), "random.json");
        QCOMPARE(read.loads.size(), live.scene().loads.size());
        live.bench().edit("Mend", [](Scene& scene) {
            scene.supports = {{{0, 0}, {0, scene.height}, true, true}};
            scene.loads = {{{scene.width, scene.width}, {0, 0}, 0, 1, 0}};
            scene.loadCasesInUse = {0};
            scene.passive = {};
            scene.blob = {};
        });
        live.run().setPlaying(true);
        QVERIFY(live.runFor(3));
    }

private:
    static QPoint anywhere(LiveFixture& live, std::mt19937& random) {
        return {static_cast<int>(random() % 1200) - 50,
                static_cast<int>(random() % static_cast<unsigned>(live.view().height() + 60)) - 30};
    }

    static void act(LiveFixture& live, std::mt19937& random) {
        switch (random() % 12) {
            case 0:
                return live.press(anywhere(live, random));
            case 1:
                return live.release(anywhere(live, random));
            case 2:
                return takeAnyTool(live, random);
            case 3:
                return pressAnyKey(live, random);
            case 4:
                return changeAnything(live, random);
            case 5: {
                QUndoStack& history = live.bench().document.undoStack();
                random() % 3 == 0 ? history.redo() : history.undo();
                return;
            }
            default:
                return live.moveTo(anywhere(live, random));
        }
    }

    static void takeAnyTool(LiveFixture& live, std::mt19937& random) {
        static const std::vector<const char*> keys = {"V", "L", "S", "X", "Y", "O", "K",
                                                      "J", "B", "E", "D", "I", "U"};
        live.takeTool(keys[random() % keys.size()]);
    }

    static void pressAnyKey(LiveFixture& live, std::mt19937& random) {
        static const std::vector<Qt::Key> keys = {Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Up,
                                                  Qt::Key_Down,   Qt::Key_Return, Qt::Key_N,
                                                  Qt::Key_Escape, Qt::Key_Plus,   Qt::Key_Minus};
        static const std::vector<Qt::KeyboardModifiers> modifiers = {
            Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier};
        live.key(keys[random() % keys.size()], modifiers[random() % modifiers.size()]);
    }

    static void changeAnything(LiveFixture& live, std::mt19937& random) {
        switch (random() % 9) {
            case 0:
                return live.window.setDrawing(random() % 2 == 0);
            case 1:
                return live.run().setPlaying(random() % 3 != 0);
            case 2:
                return live.run().step();
            case 3:
                return live.run().startAfresh();
            case 4:
                return live.bench().setBrush({static_cast<int>(random() % 9), random() % 2 == 0});
            case 5:
                return live.run().setMovesBlob(random() % 2 == 0);
            case 6:
                return live.bench().deleteSelectedLoad();
            case 7: {
                const int width = 4 + static_cast<int>(random() % 30);
                const int height = 4 + static_cast<int>(random() % 20);
                live.bench().editWhole("Grid",
                                       [=](Scene& scene) { resizeGrid(scene, width, height); });
                return;
            }
            default: {
                const int last = live.scene().loadCases - 1;
                const bool adds = random() % 2 == 0;
                live.bench().editWhole("Case", [=](Scene& scene) {
                    adds ? addLoadCase(scene) : removeLoadCase(scene, last);
                });
            }
        }
    }
};

QObject* makeRandomTest() { return new RandomTest; }
#include "random_test.moc"
