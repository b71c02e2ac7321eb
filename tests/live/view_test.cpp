#include <QLabel>
#include <QtTest>
#include <cmath>
#include <map>
#include <sstream>

#include "live_fixture.h"
#include "number_text.h"
#include "program.h"

namespace fs = std::filesystem;

/// The views of an analysis on the plate.
class ViewTest : public QObject {
    Q_OBJECT

private slots:
    void valuesUnderTheHandAreThoseOfTheProgram() {
        Scene scene = twoCases();
        scene.elementSize = 2.5;
        scene.densities = Field(scene.width, scene.height, 1);
        LiveFixture live(scene);
        live.window.setDrawing(true);
        const fs::path file = path("drawn.json");
        live.bench().document.save(file);
        const fs::path csv = path("values.csv");
        QCOMPARE(runProgram({"score", QString::fromStdString(file.string()), "--values",
                             QString::fromStdString(csv.string()), "--quiet"})
                     .status,
                 0);
        const auto elements = rowOf(csv, 7, 4, 2.5, 0.5);
        const auto nodes = rowOf(path("values-nodes.csv"), 7, 4, 2.5, 0);
        const auto digits = [](double number) { return numberText(number, 3); };

        // Both load cases: the sum of energies, the stress of the worse.
        const double energy = elements.at("energy_0") + elements.at("energy_1");
        QVERIFY(showsAt(live, "Ctrl+2", 7, 4, "compliance " + digits(energy) + ","));
        const QString worse = elements.at("von_mises_0") > elements.at("von_mises_1") ? "0" : "1";
        const auto stress = [&](const QString& loadCase) {
            const auto value = [&](const char* name) {
                return digits(elements.at(name + loadCase.toStdString()));
            };
            return QString("von Mises %1, x %2, y %3, shear %4 force/mm²")
                .arg(value("von_mises_"), value("stress_x_"), value("stress_y_"), value("shear_"));
        };
        QVERIFY(showsAt(live, "Ctrl+3", 7, 4, stress(worse) + " (load case " + worse + ")"));
        auto& cases = live.named<QComboBox>("Load case");
        cases.setCurrentIndex(2);
        QVERIFY(showsAt(live, "", 7, 4, stress("1")));
        const QString moved =
            QString("in x %1, in y %2")
                .arg(digits(nodes.at("displacement_x_1")), digits(nodes.at("displacement_y_1")));
        // Where the deformed plate is drawn.
        QVERIFY(live.takeTool("Ctrl+4"));
        const auto caption = [&] {
            return live.window.plateStage().fields().legend().legend().caption;
        };
        QTRY_VERIFY(caption().contains("times"));
        const double times = QLocale().toDouble(caption().section("times ", 1).section(' ', 0, 0));
        QVERIFY(showsAt(live, "", 7 + times * nodes.at("displacement_x_1"),
                        4 + times * nodes.at("displacement_y_1"), moved));
        // A load case that goes is not shown any longer.
        live.bench().editWhole("Case", [](Scene& edited) { edited.loadCasesInUse = {0}; });
        QVERIFY(!live.window.plateStage().fields().choice().loadCase);
        QVERIFY(showsAt(live, "Ctrl+1", 7, 4, "Density " + QLocale().toString(1.0, 'f', 2)));
    }

    void aSettledDesignShowsItsFieldAndAFormingOneItsDensity() {
        LiveFixture live(twoCases());
        QVERIFY(live.takeTool("Ctrl+3"));
        QCOMPARE(kind(live), Legend::Kind::TEXT);
        QVERIFY(live.settle());
        QTRY_COMPARE(kind(live), Legend::Kind::VALUES);
        const QImage stresses = picture(live);
        QVERIFY(live.takeTool("Ctrl+2"));
        QTRY_COMPARE(kind(live), Legend::Kind::MULTIPLES);
        QVERIFY(picture(live) != stresses);
        QVERIFY(live.takeTool("Ctrl+3"));
        QTRY_COMPARE(kind(live), Legend::Kind::VALUES);
        QCOMPARE(picture(live), stresses);
        // The legend follows the size of the elements, which the colours need not.
        const auto average = [&] {
            const auto& scale = live.window.plateStage().fields().legend().legend().scale;
            return scale ? scale->average() : 0;
        };
        const double before = average();
        live.bench().editWhole("Size", [](Scene& scene) { scene.elementSize *= 2; });
        QTRY_VERIFY(std::abs(average() - 0.5 * before) < 1e-6 * before);
        live.bench().edit("Volume", [](Scene& scene) { scene.volumeFraction = 0.4; });
        QCOMPARE(kind(live), Legend::Kind::TEXT);
    }

    void theDeformedPlateMovesOnlyWhileTheUserPlaysIt() {
        LiveFixture live(twoCases());
        QVERIFY(live.settle());
        QVERIFY(live.takeTool("Ctrl+4"));
        const auto caption = [&] {
            return live.window.plateStage().fields().legend().legend().caption;
        };
        QTRY_VERIFY(caption().contains("displacements times"));
        const QImage still = picture(live);
        int shares = 0;
        connect(&live.window.plateStage().fields(), &FieldBar::animated, this, [&] { ++shares; });
        QTest::qWait(150);
        QCOMPARE(shares, 0);
        QAction* animate = live.window.plateStage().fields().animateAction();
        animate->trigger();
        QTRY_VERIFY(shares > 5);
        QVERIFY(picture(live) != still);
        animate->trigger();
        QCOMPARE(picture(live), still);
        shares = 0;
        QTest::qWait(150);
        QCOMPARE(shares, 0);
    }

private:
    static Scene twoCases() {
        Scene scene = LiveFixture::smallScene();
        scene.loadCases.resize(2);
        scene.loadCasesInUse = {0, 1};
        scene.loads.push_back({{24, 24}, {0, 0}, 2, 0, 1});
        return scene;
    }

    fs::path path(const char* name) const { return directory.filePath(name).toStdString(); }

    static Legend::Kind kind(LiveFixture& live) {
        return live.window.plateStage().fields().legend().legend().kind;
    }

    static QImage picture(LiveFixture& live) {
        const QPoint corner = live.at(0, 0);
        return live.view().grab(QRect(corner, live.at(24, 12))).toImage();
    }

    /// Whether the value at an element comes to contain this.
    static bool showsAt(LiveFixture& live, const QString& view, double x, double y,
                        const QString& expected) {
        if (!view.isEmpty() && !live.takeTool(view)) return false;
        const auto& value = live.named<QLabel>("Value under the pointer");
        const bool isShown = QTest::qWaitFor(
            [&] {
                live.moveTo(live.at(x + 0.3, y + 0.3));
                return value.text().contains(expected);
            },
            20000);
        if (!isShown) qWarning() << value.text() << "instead of" << expected;
        return isShown;
    }

    /// The values of the row for an element or a node, by the names of the columns.
    static std::map<std::string, double> rowOf(const fs::path& file, int x, int y, double size,
                                               double offset) {
        std::istringstream lines(bytesOf(file));
        std::string line;
        std::getline(lines, line);
        const QStringList names = QString::fromStdString(line).split(',');
        std::map<std::string, double> row;
        while (std::getline(lines, line)) {
            const QStringList values = QString::fromStdString(line).split(',');
            if (std::abs(values[0].toDouble() - size * (x + offset)) > 1e-6 ||
                std::abs(values[1].toDouble() - size * (y + offset)) > 1e-6)
                continue;
            for (int i = 0; i < names.size(); ++i)
                row[names[i].toStdString()] = values[i].toDouble();
        }
        return row;
    }

    QTemporaryDir directory;
};

QObject* makeViewTest() { return new ViewTest; }
#include "view_test.moc"
