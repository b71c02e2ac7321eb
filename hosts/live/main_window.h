#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <optional>

#include "drawing_clock.h"
#include "drawing_mode.h"
#include "export_actions.h"
#include "field_manners.h"
#include "field_picture.h"
#include "file_actions.h"
#include "first_hint.h"
#include "live_run.h"
#include "numbers_panel.h"
#include "piece_actions.h"
#include "plate_stage.h"
#include "plot_panel.h"
#include "recorder.h"
#include "recovery.h"
#include "run_actions.h"
#include "start_here.h"
#include "tool_box.h"
#include "variant_keeper.h"
#include "view_actions.h"
#include "workbench.h"

class BrushBar;

/// The window: puts plate, tools and panels together, and carries signals between them.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Opens a scene and lets it form. If that fails, reports why and returns false.
    bool open(const std::filesystem::path& file);
    /// Opens the last scene, or a scene that comes with the program.
    void openAny();

    void setDrawing(bool draws);

    /// Offers the tour at the first start of the program.
    void offerTour() { startHere->offerOnce(); }

    /// Keeps the edits when the user logs out or a signal ends the program.
    void endOnSignals() { recovery.endOnSignals(); }

    // For tests.
    Workbench& workbench() { return bench; }
    LiveRun& liveRun() { return run; }
    PlateStage& plateStage() { return *stage; }
    DrawingMode& drawingMode() { return *drawing; }
    ExportActions& exporter() { return *exports; }
    StartHere& tour() { return *startHere; }
    VariantStrip& variants() { return *variantStrip; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeStatusBar();
    void makeParts();
    void makeDocks();
    void makeVariants();
    QDockWidget* addDock(QWidget* panel, const QString& name, const QString& key);
    void makeEditActions();
    void makeMenus();
    void makeHelp(QMenu& menu);
    void makeToolBars();
    void makeStartHere();
    void showToolHint();
    void connectDocument();
    void connectPlate();
    void connectRun();
    void restoreLayout();
    void fitToScreen();
    void shareOutHeights();
    void showUsualLayout();

    void showFrame();
    void showPlate();
    Legend legendOfPlate(const CommonView& common) const;
    QString readPlate(QPointF place) const;
    void showState();
    void showScore(std::optional<ScoreResult> result);
    void showDocks(bool shows);
    std::optional<Field> designToSave() const;
    std::optional<Field> restingDesign() const;
    /// The score of the design on the plate; null while that forms.
    const ScoreResult* scoreOfPlate() const;
    void showTitle();
    void showProblems();
    void showTheme();
    void openGallery();
    void openMenu(const Hand& hand, QPoint at);
    void showNumbersOfSelection();
    std::optional<ExportActions::Exhibit> exhibit() const;
    std::optional<VariantKeeper::View> viewToKeep() const;

    Workbench bench;
    LiveRun run;
    Recovery recovery;
    Recorder recorder;
    PlateStage* stage = nullptr;
    FirstHint* hint = nullptr;
    DrawingClock* clock = nullptr;
    QLabel* value = nullptr;  // under the hand
    NumbersPanel* numbers = nullptr;
    PlotPanel* plot = nullptr;
    VariantStrip* variantStrip = nullptr;
    QDockWidget* variantDock = nullptr;
    BrushBar* brushBar = nullptr;
    std::unique_ptr<ToolBox> tools;
    std::unique_ptr<PieceActions> pieces;
    std::unique_ptr<FileActions> files;
    std::unique_ptr<ViewActions> views;
    std::unique_ptr<RunActions> runActions;
    std::unique_ptr<ExportActions> exports;
    std::unique_ptr<DrawingMode> drawing;
    std::unique_ptr<StartHere> startHere;
    std::unique_ptr<VariantKeeper> variantKeeper;
    FieldManners fieldManners;
    std::optional<ScoreResult> settledScore;
    int lastStep = 0;
    bool hasLayout = false;
    QAction* undo = nullptr;
    QAction* redo = nullptr;
    QAction* drawMode = nullptr;
    QAction* gallery = nullptr;
    QAction* resetLayout = nullptr;
    QByteArray usualLayout;
    QDockWidget* loadDock = nullptr;
    QDockWidget* areaDock = nullptr;
    QMenu* help = nullptr;
    QLabel* handText = nullptr;
    QList<QDockWidget*> docks;
    QByteArray layoutWithDocks;
    bool areDocksShown = true;
};
