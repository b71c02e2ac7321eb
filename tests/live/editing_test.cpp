#include <QSettings>
#include <QtTest>

#include "live_fixture.h"

/// Hands on the plate, and what the design makes of it.
class EditingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { isolateSettings(); }

    void draggingALoadTakesTheMaterialAlong() {
        LiveFixture live("optimise-cantilever.json");
        QVERIFY(live.reach(40));
        const double before = live.material(60, 79, 0, 9);
        live.drag(live.at(80, 25), live.at(80, 0));
        QCOMPARE(live.scene().loads[0].y, (Range{0, 0}));
        QVERIFY(live.runFor(60));
        const double after = live.material(60, 79, 0, 9);
        QVERIFY2(after > before + 0.2, qPrintable(QString("%1 after %2").arg(after).arg(before)));
    }
};

QTEST_MAIN(EditingTest)
#include "editing_test.moc"
