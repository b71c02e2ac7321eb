#include <QInputDialog>
#include <QLabel>
#include <QtTest>
#include <vector>

#include "dialog_answers.h"
#include "export/design_file.h"
#include "export/output_file.h"
#include "format/scene_writer.h"
#include "live_fixture.h"
#include "saved_variants.h"
#include "variant_comparison.h"

/// Designs that are kept, compared and shown again.
class VariantTest : public QObject {
    Q_OBJECT

private slots:
    void aVariantIsRestoredAsItWasSeen() {
        LiveFixture live(LiveFixture::smallScene());
        QVERIFY(live.settle());
        const Field first = live.run().frame().material;
        QVERIFY(live.takeTool("Ctrl+K"));
        live.bench().edit("More", [](Scene& scene) { scene.volumeFraction = 0.7; });
        QVERIFY(live.settle());
        QVERIFY(live.takeTool("Ctrl+K"));
        const auto& variants = live.window.variants().variants();
        QCOMPARE(variants.size(), std::size_t{2});
        QVERIFY(variants[0].compliance() > variants[1].compliance());
        QCOMPARE(variants[0].share(), mean(variants[0].score->design));
        QVERIFY(variants[0].share() < variants[1].share());
        activate(live, 0);
        QCOMPARE(live.run().state(), RunState::AS_KEPT);
        QVERIFY(live.run().frame().material == first);
        QCOMPARE(live.scene().volumeFraction, 0.5);
        // With the score that it had.
        const QString score = numbersOf(variants[0]).section('\n', 0, 0).section(' ', 1);
        const ResultLine& line = live.window.plateStage().resultLine();
        QTRY_VERIFY_WITH_TIMEOUT(line.text().contains(score), 60000);
        // Nothing tells of the run before, and a step does not continue it.
        QCOMPARE(live.window.findChild<QLabel*>("Iteration")->text(), QString("–"));
        live.run().step();
        QTRY_COMPARE_WITH_TIMEOUT(live.run().state(), RunState::PAUSED, 60000);
        QTRY_COMPARE_WITH_TIMEOUT(live.run().frame().numbers.iteration, 1, 60000);
        // One step of the history.
        live.bench().document.undoStack().undo();
        QCOMPARE(live.scene().volumeFraction, 0.7);
        live.run().setPlaying(true);
        QVERIFY(live.settle());
        live.bench().document.undoStack().setClean();
        QVERIFY(live.window.open(VOXAM_SCENES "/minimal.json"));
        QVERIFY(variants.empty());
    }

    void aDesignIsKeptWhileItForms() {
        std::vector<Variant> kept;
        keepWhileForming(kept);
        // The scores came without a wait, each with its own loads. The library has one analysis, so
        // the window with its worker has to be gone.
        QCOMPARE(kept.size(), std::size_t{3});
        for (const Variant& variant : kept) {
            const Assessment expected = assess(*variant.drawn, *variant.seen);
            QCOMPARE(variant.score->isSupported(), expected.problems.empty());
            if (variant.compliance()) QCOMPARE(*variant.compliance(), expected.score.compliance);
        }
    }

    void variantsAreSavedWithTheDocument() {
        LiveFixture live(LiveFixture::smallScene());
        live.window.variants().add(drawn(live.scene(), 0.5, 40));
        QVERIFY(live.window.isWindowModified());
        const QString file = directory.filePath("kept.json");
        {
            const FileAnswer answer(file);
            QVERIFY(live.takeTool("Ctrl+Shift+S"));
        }
        QVERIFY(!live.window.isWindowModified());
        const auto& variants = live.window.variants().variants();
        const Variant saved = variants.front();
        QVERIFY(live.window.open(VOXAM_SCENES "/minimal.json"));
        QVERIFY(variants.empty());
        QVERIFY(live.window.open(file.toStdString()));
        QCOMPARE(variants.size(), std::size_t{1});
        QCOMPARE(variants[0].name, saved.name);
        QCOMPARE(sceneText(*variants[0].whole), sceneText(*saved.whole));
        QVERIFY(variants[0].material == saved.material);
        QTRY_VERIFY_WITH_TIMEOUT(variants[0].score, 60000);
        // What cannot be read is told, and not lost by a save.
        const auto kept = variantsFileOf(file.toStdString());
        QVERIFY(live.window.open(VOXAM_SCENES "/minimal.json"));
        writeFile(kept, {'{', '}', '}'});
        const MessageAnswer warning(QMessageBox::Ok);
        QVERIFY(live.window.open(file.toStdString()));
        QVERIFY2(warning.text.contains("kept.variants"), qPrintable(warning.text));
        QVERIFY(live.takeTool("Ctrl+S"));
        QCOMPARE(std::filesystem::file_size(kept), std::uintmax_t{3});
        // Without variants there is no file.
        live.window.variants().add(saved);
        QListWidget& list = live.window.variants().list();
        list.selectAll();
        const DialogAnswer name([](QWidget& dialog) {
            auto* question = qobject_cast<QInputDialog*>(&dialog);
            if (question == nullptr) return false;
            question->setTextValue("Mine");
            question->accept();
            return true;
        });
        QTest::keyClick(&list, Qt::Key_F2);
        QCOMPARE(variants[0].name, QString("Mine"));
        for (const auto button : {QMessageBox::Cancel, QMessageBox::Yes}) {
            const MessageAnswer answer(button);
            QTest::keyClick(&list, Qt::Key_Delete);
            QVERIFY2(answer.text.contains("Remove 1 variant"), qPrintable(answer.text));
            QCOMPARE(variants.empty(), button == QMessageBox::Yes);
        }
        QVERIFY(live.takeTool("Ctrl+S"));
        QVERIFY(!std::filesystem::exists(kept));
        QVERIFY(std::filesystem::exists(kept.string() + ".damaged"));
    }

    void twoVariantsAreComparedSideBySide() {
        LiveFixture live(LiveFixture::smallScene());
        Variant half = drawn(live.scene(), 0.5, 40);
        half.name = "Half";
        Variant all = drawn(live.scene(), 1, 10);
        all.name = "All";
        live.window.variants().add(half);
        live.window.variants().add(all);
        QVERIFY(!named(live, "Compare").isEnabled());
        live.window.variants().list().selectAll();
        QStringList said;
        const DialogAnswer closing([&](QWidget& dialog) {
            if (qobject_cast<VariantComparison*>(&dialog) == nullptr) return false;
            dialog.repaint();
            for (const QLabel* label : dialog.findChildren<QLabel*>()) said << label->text();
            dialog.close();
            return true;
        });
        named(live, "Compare").trigger();
        const QString text = said.join("|");
        QVERIFY2(text.contains("All is 300.0\u00a0% stiffer."), qPrintable(text));
        QVERIFY2(text.contains("All has more material, by 50.0\u00a0% of"), qPrintable(text));
        // Another load makes another task.
        Scene other = *all.seen;
        other.loads[0].fy = 2;
        all.seen = std::make_shared<const Scene>(other);
        QVERIFY(comparisonOf(half, all).contains("cannot be compared"));
    }

    void anImportedDesignIsAVariantWithItsScore() {
        Field design(24, 12);
        for (int x = 0; x < 24; ++x)
            for (int y = 4; y < 8; ++y) design.at(x, y) = 1;
        // Before the window's worker: the library has one analysis.
        const auto expected = assess(design, LiveFixture::smallScene()).score.compliance;
        LiveFixture live(LiveFixture::smallScene());
        const QString file = directory.filePath("beam.png");
        writeFile(file.toStdString(), encodeDesignPng(design));
        const FileAnswer answer(file);
        named(live, "Import a design").trigger();
        const auto& variants = live.window.variants().variants();
        QCOMPARE(variants.size(), std::size_t{1});
        QCOMPARE(variants[0].name, QString("beam.png"));
        QTRY_VERIFY_WITH_TIMEOUT(variants[0].compliance(), 60000);
        QCOMPARE(*variants[0].compliance(), expected);
        // Back from the optimiser to the drawing.
        live.window.setDrawing(false);
        live.bench().edit("Clear", [](Scene& scene) { scene.densities.reset(); });
        activate(live, 0);
        QVERIFY(live.window.drawingMode().isActive());
        QVERIFY(*live.window.drawingMode().design() == design);
    }

private:
    /// Keeps three variants, each after an edit of the load, and waits for their scores.
    static void keepWhileForming(std::vector<Variant>& kept) {
        LiveFixture live("optimise-cantilever.json");
        const auto& variants = live.window.variants().variants();
        for (int count = 1; count <= 3; ++count) {
            QVERIFY(live.runFor(3));
            live.drag(live.at(80, 26 - count), live.at(80, 25 - count));
            QVERIFY(live.takeTool("Ctrl+K"));
            QCOMPARE(variants.size(), static_cast<std::size_t>(count));
            QVERIFY(variants.back().share() > 0.3);
            QCOMPARE(variants.back().seen->loads, live.scene().loads);
        }
        QVERIFY(live.settle());
        for (const Variant& variant : variants) QTRY_VERIFY_WITH_TIMEOUT(variant.score, 60000);
        kept.assign(variants.begin(), variants.end());
    }

    static Variant drawn(const Scene& scene, double share, double compliance) {
        Variant variant;
        variant.whole = variant.seen = std::make_shared<const Scene>(scene);
        variant.material = Field(scene.width, scene.height);
        const auto count = static_cast<std::size_t>(share * scene.width * scene.height);
        std::fill_n(variant.material.values.begin(), count, 1.0f);
        variant.score.emplace();
        variant.score->design = variant.material;
        variant.drawn = std::make_shared<const Field>(variant.material);
        variant.score->assessment.score.compliance = compliance;
        return variant;
    }

    static void activate(LiveFixture& live, int row) {
        QListWidget& list = live.window.variants().list();
        list.clearSelection();
        list.setCurrentRow(row);
        QTest::keyClick(&list, Qt::Key_Return);
    }

    static QAction& named(LiveFixture& live, const QString& text) {
        for (QAction* action : live.entries())
            if (action->text().remove('&').startsWith(text)) return *action;
        throw std::invalid_argument("no entry " + text.toStdString());
    }

    QTemporaryDir directory;
};

QObject* makeVariantTest() { return new VariantTest; }
#include "variant_test.moc"
