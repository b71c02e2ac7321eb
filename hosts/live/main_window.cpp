#include "main_window.h"

#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QWhatsThis>
#include <algorithm>
#include <utility>

#include "action_text.h"
#include "area_panel.h"
#include "brush_bar.h"
#include "checks/plate_checks.h"
#include "drawing/subtitles.h"
#include "gallery.h"
#include "icons.h"
#include "load_panel.h"
#include "plate_image.h"
#include "problems.h"
#include "reflection.h"
#include "scene_panel.h"
#include "scene_places.h"
#include "settings_panel.h"
#include "shipped_text.h"
#include "shortcut_dialog.h"

using namespace voxam;

namespace {

/// Why a scored design would not hold; empty if it does.
QString flawOf(const ScoreResult& result) {
    const Assessment& found = result.assessment;
    if (!result.isSupported()) return sentenceOf(found.problems.front());
    return found.floating.empty() ? QString() : sentenceOf(found.floating);
}

constexpr const char* FIRST_SCENE = "optimise-cantilever.json";
constexpr const char* KEEP_VOID_KEY = "O";
constexpr double ORDINARY_RATE = 60;  // Hz, for a screen that does not tell
constexpr int MESSAGE_TIME = 6000;    // ms
constexpr int LONG_MESSAGE_TIME = 20000;
constexpr QSize DEFAULT_SIZE(1280, 820);
constexpr QSize FRAME_SIZE(16, 48);  // about what a desktop puts around a window
constexpr const char* GEOMETRY_KEY = "window/geometry";
constexpr const char* LAYOUT_KEY = "window/layout";
constexpr int LAYOUT_VERSION = 4;
constexpr const char* BRUSH_SIZE_KEY = "brush/size";
constexpr const char* BRUSH_IS_ROUND_KEY = "brush/isRound";

}  // namespace

MainWindow::MainWindow() : run(bench), recovery(bench.document) {
    setWindowIcon(applicationIcon());
    setAcceptDrops(true);
    makeStatusBar();
    makeParts();
    makeEditActions();
    makeDocks();
    makeVariants();
    makeMenus();
    makeToolBars();
    makeStartHere();
    connectDocument();
    connectPlate();
    connectRun();
    restoreLayout();
    showTheme();
    const double rate = screen()->refreshRate();
    run.setRate(rate > 1 ? rate : ORDINARY_RATE);
}

MainWindow::~MainWindow() {
    // A history that goes reports that nothing is modified any more, to whom is no matter now.
    disconnect(&bench.document, nullptr, this, nullptr);
    // They read values of parts that go before the plates.
    for (PlateView* view : {&stage->plate(), &stage->rival()}) view->setReading({});
}

// From the start, or the plate would shrink at the first message. The text of the hand has a label
// of its own, because the hand moves again at once and must not replace a message.
void MainWindow::makeStatusBar() {
    handText = new QLabel;
    handText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(handText, 1);
    value = new QLabel;
    value->setAccessibleName(tr("Value under the pointer"));
    statusBar()->addPermanentWidget(value);
}

void MainWindow::makeParts() {
    stage = new PlateStage;
    setCentralWidget(stage);
    hint = new FirstHint(bench, stage->plate());
    clock = new DrawingClock(bench);
    statusBar()->addPermanentWidget(clock);
    connect(clock, &DrawingClock::ending, &stage->plate(), &PlateView::endGesture);
    tools = std::make_unique<ToolBox>(bench, stage->plate());
    pieces = std::make_unique<PieceActions>(bench, stage->plate());
    files = std::make_unique<FileActions>(bench.document, *this);
    views = std::make_unique<ViewActions>(*this);
    views->addView(stage->plate());
    views->addView(stage->rival());
    connect(views.get(), &ViewActions::themeChanged, this, &MainWindow::showTheme);
    runActions = std::make_unique<RunActions>(run);
    exports = std::make_unique<ExportActions>(
        *this, [this] { return exhibit(); },
        [this](const Field& material, const Scene& scene) {
            return run.scoreAsDrawn(material, scene);
        },
        recorder);
    connect(exports.get(), &ExportActions::exported, this,
            [this](const QString& text) { statusBar()->showMessage(text, MESSAGE_TIME); });
    connect(exports.get(), &ExportActions::elementSizeGiven, this, [this](double size) {
        bench.editWhole(tr("Change element size"), [=](Scene& scene) { scene.elementSize = size; });
    });
    drawing = std::make_unique<DrawingMode>(
        bench, run, *clock,
        DrawingMode::Stage{stage->plate(), stage->plateHeader(), stage->rival(),
                           stage->rivalHeader(), stage->fields()});
}

void MainWindow::makeEditActions() {
    QUndoStack& history = bench.document.undoStack();
    undo = history.createUndoAction(this, tr("&Undo"));
    redo = history.createRedoAction(this, tr("&Redo"));
    undo->setProperty(PLAIN_NAME, tr("Undo"));
    redo->setProperty(PLAIN_NAME, tr("Redo"));
    undo->setIcon(icon(Glyph::UNDO));
    redo->setIcon(icon(Glyph::REDO));
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcuts({QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")});
    drawMode = new QAction(icon(Glyph::DRAW_MODE), tr("&Draw and be scored"), this);
    drawMode->setShortcut(QKeySequence("Ctrl+D"));
    drawMode->setCheckable(true);
    explain(*drawMode, tr("Draw a structure, and compare it with the optimiser's"));
    connect(drawMode, &QAction::toggled, this, &MainWindow::setDrawing);
    resetLayout = new QAction(tr("&Reset layout"), this);
    explain(*resetLayout, tr("Show all panels and tool bars in their usual places and sizes"));
    connect(resetLayout, &QAction::triggered, this, &MainWindow::showUsualLayout);
    gallery = new QAction(icon(Glyph::GALLERY), tr("&Gallery..."), this);
    gallery->setShortcut(QKeySequence("Ctrl+G"));
    explain(*gallery, tr("The scenes that come with the program"));
    connect(gallery, &QAction::triggered, this, &MainWindow::openGallery);
}

QDockWidget* MainWindow::addDock(QWidget* panel, const QString& name, const QString& key) {
    auto* dock = new QDockWidget(name);
    dock->setObjectName(key);
    auto* scroller = new QScrollArea;
    scroller->setWidget(panel);
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setMinimumWidth(panel->minimumSizeHint().width() + 20);
    fieldManners.teach(*panel);
    dock->setWidget(scroller);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    docks.append(dock);
    return dock;
}

void MainWindow::makeDocks() {
    auto* settingsPanel = new SettingsPanel(bench, run);
    connect(settingsPanel, &SettingsPanel::gridApplied, &stage->plate(),
            [this] { stage->plate().setFocus(); });
    QDockWidget* settings = addDock(settingsPanel, tr("Settings"), "settings");
    QDockWidget* scenePanel = addDock(new ScenePanel(bench), tr("Scene"), "scene");
    tabifyDockWidget(settings, scenePanel);
    loadDock = addDock(new LoadPanel(bench), tr("Loads"), "loads");
    tabifyDockWidget(scenePanel, loadDock);
    areaDock = addDock(new AreaPanel(bench), tr("Areas"), "areas");
    tabifyDockWidget(loadDock, areaDock);
    settings->raise();
    numbers = new NumbersPanel;
    plot = new PlotPanel;
    QDockWidget* course = addDock(plot, tr("Course"), "plot");
    tabifyDockWidget(course, addDock(numbers, tr("Numbers"), "numbers"));
    course->raise();
}

void MainWindow::makeVariants() {
    variantStrip = new VariantStrip;
    variantDock = new QDockWidget(tr("Variants"));
    variantDock->setObjectName("variants");
    variantDock->setWidget(variantStrip);
    variantDock->setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    addDockWidget(Qt::BottomDockWidgetArea, variantDock);
    variantDock->hide();
    connect(variantStrip, &VariantStrip::filled, variantDock, &QDockWidget::setVisible);
    variantKeeper = std::make_unique<VariantKeeper>(
        bench, run, *variantStrip, [this] { return viewToKeep(); },
        [this](bool draws) { setDrawing(draws); });
    connect(variantKeeper.get(), &VariantKeeper::told, this,
            [this](const QString& text) { statusBar()->showMessage(text, MESSAGE_TIME); });
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addActions({files->newAction, files->openAction, gallery});
    file->addMenu(files->recentMenu);
    file->addSeparator();
    file->addActions({files->saveAction, files->saveAsAction});
    file->addSeparator();
    file->addAction(files->importAction);
    file->addMenu(tr("&Export"))->addActions(exports->actions());
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({undo, redo});
    edit->addSeparator();
    edit->addActions(pieces->actions());
    edit->addSeparator();
    edit->addAction(exports->copyAction());

    QMenu* toolMenu = menuBar()->addMenu(tr("&Tools"));
    for (QAction* action : tools->plateActions()) toolMenu->addAction(action);
    for (QAction* action : tools->drawingActions()) toolMenu->addAction(action);
    toolMenu->addSeparator();
    for (QAction* action : tools->mirrorActions()) toolMenu->addAction(action);
    toolMenu->addSeparator();
    brushBar = new BrushBar(bench);
    toolMenu->addActions(brushBar->menuActions());
    connect(tools.get(), &ToolBox::taken, brushBar,
            [this](const Tool& tool) { brushBar->setPaintsShapes(tool.paintsShapes()); });

    QMenu* runMenu = menuBar()->addMenu(tr("&Run"));
    runMenu->addActions(runActions->actions());
    runMenu->addSeparator();
    runMenu->addAction(drawMode);
    runMenu->addActions(drawing->actions());
    runMenu->addAction(clock->action);

    QMenu* variants = menuBar()->addMenu(tr("Varia&nts"));
    variants->addAction(variantKeeper->keepAction);
    variants->addSeparator();
    variants->addActions(variantStrip->actions());

    QMenu* view = menuBar()->addMenu(tr("&View"));
    views->fillMenu(*view);
    view->addActions(stage->fields().viewActions());
    view->addAction(stage->fields().animateAction());
    view->addSeparator();
    for (QDockWidget* dock : docks) view->addAction(dock->toggleViewAction());
    view->addAction(variantDock->toggleViewAction());
    view->addAction(resetLayout);
    help = menuBar()->addMenu(tr("&Help"));
    makeHelp(*help);
}

void MainWindow::makeHelp(QMenu& menu) {
    QAction* keys = menu.addAction(tr("&Keyboard shortcuts"));
    keys->setShortcuts({QKeySequence("?"), QKeySequence(Qt::Key_F1)});
    connect(keys, &QAction::triggered, this, [this] { ShortcutDialog(*menuBar(), this).exec(); });
    QAction* whatsThis = QWhatsThis::createAction(this);
    whatsThis->setText(tr("&What is this?"));
    menu.addAction(whatsThis);
    menu.addSeparator();
    QAction* about = menu.addAction(tr("&About Voxam Live"));
    connect(about, &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About Voxam Live"),
                           tr("<h3>Voxam Live %1</h3><p>The stiffest structure for a given amount "
                              "of material, while you pull at it.</p>"
                              "<p>The program as a whole is under the GNU General Public License, "
                              "version 3 or later, because it contains CHOLMOD and dxflib. It also "
                              "uses SuiteSparse, OpenBLAS, oneTBB, cairo, libpng, giflib and "
                              "nlohmann-json, each under its own licence, and Qt %2 under the GNU "
                              "Lesser General Public License. See docs/licences.md in the "
                              "source.</p>")
                               .arg(QCoreApplication::applicationVersion(), qVersion()));
    });
    menu.addAction(tr("About &Qt"), this, [this] { QMessageBox::aboutQt(this); });
}

void MainWindow::makeToolBars() {
    QToolBar* main = addToolBar(tr("Main"));
    main->setObjectName("main");
    main->addActions({files->openAction, files->saveAction, gallery});
    main->addSeparator();
    main->addActions({undo, redo});
    main->addSeparator();
    main->addActions(runActions->actions());
    main->addSeparator();
    main->addActions({drawMode, variantKeeper->keepAction});
    main->addSeparator();
    main->addActions(views->toolBarActions());
    addToolBar(brushBar);
    auto* palette = new QToolBar(tr("Tools"));
    palette->setObjectName("tools");
    for (QAction* action : tools->plateActions()) palette->addAction(action);
    for (QAction* action : tools->drawingActions()) palette->addAction(action);
    addToolBar(Qt::LeftToolBarArea, palette);
}

void MainWindow::makeStartHere() {
    const std::vector<QAction*>& plateTools = tools->plateActions();
    const auto keepVoid = std::find_if(plateTools.begin(), plateTools.end(), [](QAction* tool) {
        return tool->shortcut() == QKeySequence(KEEP_VOID_KEY);
    });
    startHere = std::make_unique<StartHere>(
        StartHere::Parts{*this, bench, stage->plate(), *docks[0],
                         *docks[0]->findChild<QWidget*>("volume"), **keepVoid, *drawMode, *gallery,
                         [this] { return files->open(shippedScenes() / FIRST_SCENE); }});
    help->insertAction(help->actions().front(), startHere->action);
    for (const auto* mode : {&tools->plateActions(), &tools->drawingActions()})
        for (QAction* tool : *mode)
            connect(tool, &QAction::toggled, this, &MainWindow::showToolHint);
    showToolHint();
}

void MainWindow::showToolHint() {
    for (const auto* mode : {&tools->plateActions(), &tools->drawingActions()})
        for (const QAction* tool : *mode)
            if (tool->isChecked()) stage->banner().setHint(tool->statusTip());
}

void MainWindow::restoreLayout() {
    usualLayout = saveState(LAYOUT_VERSION);
    const QSettings settings;
    resize(DEFAULT_SIZE.boundedTo(screen()->availableSize() - FRAME_SIZE));
    if (restoreGeometry(settings.value(GEOMETRY_KEY).toByteArray())) fitToScreen();
    const Brush usual = bench.brush();
    bench.setBrush({settings.value(BRUSH_SIZE_KEY, usual.size).toInt(),
                    settings.value(BRUSH_IS_ROUND_KEY, usual.isRound).toBool()});
}

// The window may have been saved on a larger screen.
void MainWindow::fitToScreen() {
    if (isMaximized() || isFullScreen()) return;
    const QRect area = screen()->availableGeometry();
    if (area.contains(QRect(pos(), size() + FRAME_SIZE))) return;
    resize(size().boundedTo(area.size() - FRAME_SIZE));
    const QSize room = area.size() - FRAME_SIZE - size();
    move(area.x() + std::clamp(x() - area.x(), 0, std::max(0, room.width())),
         area.y() + std::clamp(y() - area.y(), 0, std::max(0, room.height())));
}

void MainWindow::connectDocument() {
    Document& document = bench.document;
    connect(&document, &Document::sceneChanged, this, [this] {
        const Scene& scene = bench.document.scene();
        stage->setPlateSize(wholePlateOf(scene).size);
        stage->timeline().setScene(bench.document.whole());
        stage->plate().setScene(bench.document.snapshot());
        stage->fields().setLoadCases(scene);
        const bool isHalf = scene.symmetry != Symmetry::NONE;
        stage->resultLine().setHalf(isHalf);
        numbers->setHalf(isHalf);
        plot->setHalf(isHalf);
        statusBar()->clearMessage();
        stage->caption().show(shippedText(scene.title), shippedText(scene.description));
        showProblems();
    });
    connect(&document, &Document::opened, this, [this] {
        stage->plate().cancelGesture();
        stage->plate().fit();
        tools->forgetLastTools();
        // The drawing mode has no tools to add missing supports.
        const Scene& scene = bench.document.scene();
        setDrawing(scene.densities.has_value() && findFreePlate(scene).empty());
    });
    files->setVariants(*variantStrip);
    connect(files.get(), &FileActions::modificationChanged, this, &MainWindow::showTitle);
    connect(files.get(), &FileActions::loaded, this,
            [this](const std::optional<Field>& design, const std::deque<Variant>& variants) {
                // No run rests before the last change of the timeline.
                if (design) bench.document.play(bench.document.whole()->timeline.size());
                design ? run.showKept(*design) : run.setPlaying(true);
                variantKeeper->open(variants);
            });
    connect(files.get(), &FileActions::imported, this, [this](const QString& name) {
        setDrawing(true);
        variantKeeper->keep(name);
    });
    connect(files.get(), &FileActions::told, this,
            [this](const QString& text) { statusBar()->showMessage(text, LONG_MESSAGE_TIME); });
    files->setDesignSource([this] { return designToSave(); });
    recovery.setVariants(*variantStrip);
    recovery.setDesignSource([this] { return restingDesign(); });
}

void MainWindow::connectPlate() {
    PlateView& plate = stage->plate();
    connect(&bench, &Workbench::selectionChanged, this,
            [this] { stage->plate().setSelection(bench.selectedPieces()); });
    connect(&plate, &PlateView::menuAsked, this, &MainWindow::openMenu);
    connect(pieces.get(), &PieceActions::numbersAsked, this, &MainWindow::showNumbersOfSelection);
    for (const auto signal : {&Workbench::refused, &Workbench::told})
        connect(&bench, signal, this,
                [this](const QString& text) { statusBar()->showMessage(text, MESSAGE_TIME); });
    connect(&plate, &PlateView::gestureEnded, &bench, &Workbench::endGesture);
    connect(&bench, &Workbench::forcesChanged, this, [this] {
        stage->plate().setForces(bench.forces());
        stage->rival().setForces(bench.forces());
    });
    connect(&plate, &PlateView::handMoved, this,
            [this](const QString& text) { handText->setText(text); });
    plate.setReading([this](QPointF place) {
        return drawing->isActive() ? drawing->readDrawing(place) : readPlate(place);
    });
    stage->rival().setReading([this](QPointF place) { return drawing->readRival(place); });
    for (PlateView* view : {&plate, &stage->rival()})
        connect(view, &PlateView::valueRead, value, &QLabel::setText);
}

void MainWindow::connectRun() {
    connect(&run, &LiveRun::frameChanged, this, &MainWindow::showFrame);
    connect(&stage->fields(), &FieldBar::choiceChanged, this,
            [this] { run.setView(stage->fields().choice()); });
    connect(&run, &LiveRun::viewChanged, this, [this] {
        if (settledScore) run.completeView(*settledScore);
        showPlate();
    });
    connect(&run, &LiveRun::viewed, this, [this](const ViewResult& result) {
        if (settledScore && settledScore->number == result.scoreNumber)
            settledScore->view = result.view;
        showPlate();
    });
    connect(&run, &LiveRun::viewFailed, this, [this](const QString& why) {
        statusBar()->showMessage(tr("The view could not be computed: %1").arg(why));
    });
    connect(&run, &LiveRun::stateChanged, this, &MainWindow::showState);
    connect(&run, &LiveRun::settingsSent, this, [this] { showScore(std::nullopt); });
    connect(&run, &LiveRun::designScored, this, [this](const ScoreResult& result) {
        if (result.isSettled && result.revision == run.revision()) showScore(result);
    });
    connect(&run, &LiveRun::designScored, &recovery, &Recovery::follow);
    // The panels show the user's run, not the rival of a drawing.
    connect(&run, &LiveRun::iterated, this, [this](const std::vector<IterationNumbers>& news) {
        if (run.isDrawing()) return;
        numbers->add(news);
        plot->add(news);
    });
    // A drag is one step of the history, whose edits follow one another.
    connect(&bench.document.undoStack(), &QUndoStack::indexChanged, plot, [this](int step) {
        if (std::exchange(lastStep, step) != step) plot->mark();
    });
    connect(&run, &LiveRun::timelinePlayed, this, [this](const Change& change) {
        plot->mark();
        statusBar()->showMessage(tr("Iteration %1: the scene's timeline changes %2")
                                     .arg(change.iteration)
                                     .arg(QString::fromStdString(change.summary())),
                                 MESSAGE_TIME);
    });
    connect(&run, &LiveRun::startedAfresh, this, [this] {
        if (run.isDrawing()) return;
        plot->clear();
        numbers->clear();
        recorder.clear();
    });
    connect(&run, &LiveRun::refusalChanged, this, &MainWindow::showProblems);
}

bool MainWindow::open(const std::filesystem::path& file) { return files->load(file); }

void MainWindow::openAny() {
    if (files->recover(recovery)) return;
    const auto last = files->lastFile();
    if (!last.empty() && open(last)) return;
    // Without any scene there would be no plate to work on.
    if (!open(shippedScenes() / FIRST_SCENE)) files->newAction->trigger();
}

void MainWindow::setDrawing(bool draws) {
    drawMode->setChecked(draws);
    stage->setDrawing(draws);
    tools->setDrawing(draws);
    hint->setDrawing(draws);
    clock->setDrawing(draws);
    drawing->setActive(draws);
    pieces->setEnabled(!draws);
    showDocks(!draws);
    // Now, or a hand that is quick would still meet the plate at its old place.
    layout()->activate();
    stage->layout()->activate();
    showProblems();
    if (draws)
        drawing->show();
    else
        showPlate();
}

// While drawing, the panels are hidden: the two plates should be as large as possible.
void MainWindow::showDocks(bool shows) {
    if (std::exchange(areDocksShown, shows) == shows) return;
    if (!shows) {
        layoutWithDocks = saveState(LAYOUT_VERSION);
        for (QDockWidget* dock : docks) dock->hide();
        return;
    }
    // show() alone would distribute the heights of the docks again.
    restoreState(layoutWithDocks, LAYOUT_VERSION);
    variantDock->setVisible(!variantStrip->variants().empty());
}

void MainWindow::showFrame() {
    const Frame& frame = run.frame();
    stage->timeline().setIteration(frame.numbers.iteration);
    const bool isOfRun = !run.isDrawing() && run.state() != RunState::AS_KEPT;
    if (isOfRun) numbers->countFrame();
    if (isOfRun && frame.numbers.iteration > 0 && !frame.material.values.empty())
        recorder.offer(frame, bench.document.snapshot(), bench.blob());
    showPlate();
}

void MainWindow::showPlate() {
    const Frame& frame = run.frame();
    const Scene& scene = bench.document.scene();
    const bool isOfThisGrid = frame.material.width == scene.width * frame.refinement &&
                              frame.material.height == scene.height * frame.refinement;
    if (drawing->isActive() || frame.material.values.empty() || !isOfThisGrid) return;
    PlateView& plate = stage->plate();
    const ScoreResult* score = scoreOfPlate();
    const CommonView common =
        commonView({score != nullptr && run.hasView(*score) ? score : nullptr});
    stage->fields().legend().show(legendOfPlate(common));
    if (common.field != nullptr) return showDesign(plate, scene, score->design, score, common);
    plate.setDeformed(std::nullopt);
    plate.setShownCases(std::nullopt);
    plate.setFloating(score != nullptr ? outlineOf(score->assessment.floating, score->design, scene)
                                       : QPainterPath());
    plate.setMaterial(materialImage(frame, bench.blob().cells, plate.colours()), true);
}

Legend MainWindow::legendOfPlate(const CommonView& common) const {
    if (common.field != nullptr || run.view().view == View::MATERIAL)
        return legendOf(common, bench.document.scene());
    const ScoreResult* score = scoreOfPlate();
    if (score != nullptr && !score->isSupported())
        return {Legend::Kind::TEXT, tr("Not available: the design does not hold as drawn")};
    return {Legend::Kind::TEXT,
            run.frame().isSettled ? tr("Computing...") : tr("Shown once the design has settled")};
}

QString MainWindow::readPlate(QPointF place) const {
    const Field& material = run.frame().material;
    const Scene& scene = bench.document.scene();
    if (material.values.empty() || material.width != scene.width * run.frame().refinement)
        return {};
    const ScoreResult* score = scoreOfPlate();
    return score != nullptr && score->view.field && run.hasView(*score)
               ? fieldReading(*score, scene, place)
               : densityReading(material, scene, place);
}

void MainWindow::showState() {
    const IterationNumbers& last = run.frame().numbers;
    // After an edit in a pause, the last numbers belong to another problem.
    const bool isOutdated = run.state() == RunState::PAUSED && last.revision != run.revision();
    stage->resultLine().showState(run.state(), isOutdated ? IterationNumbers() : last,
                                  run.secondsWaited());
    // After a refusal, they belong to the last design that could be computed.
    numbers->setEnabled(!isOutdated && run.refusal().text.empty());
    const bool isForming = run.state() == RunState::FORMING ||
                           (run.state() == RunState::PAUSED && !run.frame().isSettled);
    if (isForming && settledScore && !run.isDrawing()) showScore(std::nullopt);
}

void MainWindow::showScore(std::optional<ScoreResult> result) {
    settledScore = std::move(result);
    stage->resultLine().showScore(settledScore);
    showProblems();
    if (settledScore) run.completeView(*settledScore);
    showPlate();
}

const ScoreResult* MainWindow::scoreOfPlate() const {
    const bool isShown = run.frame().isSettled || run.state() == RunState::AS_KEPT;
    return settledScore && isShown ? &*settledScore : nullptr;
}

void MainWindow::showTitle() {
    setWindowTitle(bench.document.displayName() + "[*]");
    setWindowModified(files->isModified());
}

void MainWindow::showProblems() {
    // While drawing, the headers describe the designs.
    Problems problems =
        problemsOf(bench.document.scene(), run.refusal(),
                   drawing->isActive() ? std::nullopt : settledScore, drawing->isActive());
    if (drawing->isActive() && !problems.text.isEmpty())
        problems.advice +=
            tr(" The tools for loads and supports come back with the end of the drawing (Ctrl+D).");
    stage->banner().say(problems.text, problems.advice);
    stage->plate().setFaults(problems.places);
}

void MainWindow::showTheme() {
    stage->setColours(isDarkNow() ? PlateColours::dark() : PlateColours::light());
    drawing->isActive() ? drawing->show() : showPlate();
}

void MainWindow::openGallery() {
    Gallery dialog(this);
    if (dialog.exec() != QDialog::Accepted || !files->open(dialog.chosen())) return;
    if (dialog.isChosenToDraw()) setDrawing(true);
}

void MainWindow::openMenu(const Hand& hand, QPoint at) {
    pieces->makeMenu(hand, {exports->copyAction(), views->wholePlate()})->popup(at);
}

void MainWindow::showNumbersOfSelection() {
    QDockWidget* dock = bench.selectedLoad() ? loadDock : areaDock;
    dock->show();
    dock->raise();
    for (QAbstractSpinBox* box : dock->findChildren<QAbstractSpinBox*>())
        if (box->isVisible()) return box->setFocus();
}

std::optional<ExportActions::Exhibit> MainWindow::exhibit() const {
    ExportActions::Exhibit shown{bench.document.scene(), {}};
    const auto view = [&](const ScoreResult& score) {
        if (run.hasView(score) && score.view.field) shown.viewed = {score.design, score.view};
    };
    shown.name = bench.document.displayName().section('.', 0, 0);
    if (drawing->isActive()) {
        if (!shown.scene.densities) return std::nullopt;
        shown.material = *drawing->design();
        const auto& score = drawing->score();
        shown.isScored = score && score->design == shown.material;
        if (!shown.isScored) return shown;
        shown.problem = flawOf(*score);
        shown.floating = score->assessment.floating;
        view(*score);
        shown.subtitle =
            QString::fromStdString(scoreSubtitle(shown.material, shown.scene, score->assessment));
        return shown;
    }
    const Frame& frame = run.frame();
    if (frame.numbers.iteration == 0 && run.state() != RunState::AS_KEPT) return std::nullopt;
    shown.isScored = scoreOfPlate() != nullptr;
    if (shown.isScored) {
        shown.problem = flawOf(*settledScore);
        view(*settledScore);
    }
    shown.material = frame.material;
    shown.scene.blob = bench.blob();
    if (frame.numbers.iteration == 0) {
        if (settledScore)
            shown.subtitle = QString::fromStdString(
                keptSubtitle(settledScore->design, shown.scene, settledScore->assessment));
        return shown;
    }
    // A picture from before an edit must not get the score of what was edited.
    if (frame.numbers.revision == run.revision())
        shown.numbers = frame.numbers;
    else
        shown.subtitle = QString::fromStdString(runSubtitle(frame.numbers, shown.scene.symmetry));
    return shown;
}

std::optional<VariantKeeper::View> MainWindow::viewToKeep() const {
    auto shown = exhibit();
    if (!shown) return std::nullopt;
    VariantKeeper::View view{std::move(shown->scene), std::move(shown->material),
                             drawing->isActive(), std::nullopt};
    if (shown->isScored) view.score = view.isDrawn ? drawing->score() : settledScore;
    return view;
}

std::optional<Field> MainWindow::designToSave() const {
    const bool isThere = run.frame().numbers.iteration > 0 || run.state() == RunState::AS_KEPT;
    // While the library refuses the scene, the plate shows the start of a run or another design.
    const bool isOfScene = run.state() != RunState::FAILED;
    if (drawing->isActive()) {
        const Field* const before = run.designBefore();
        return before != nullptr ? std::optional(*before) : std::nullopt;
    }
    if (!isThere || !isOfScene) return std::nullopt;
    return run.frame().material;
}

std::optional<Field> MainWindow::restingDesign() const {
    const bool rests = isAtRest(run.state()) || run.state() == RunState::AS_KEPT;
    return rests ? designToSave() : std::nullopt;
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (std::exchange(hasLayout, true)) return;
    // Once the window has its size: heights that are set before would be shared out anew.
    QTimer::singleShot(0, this, [this] {
        const QByteArray state = QSettings().value(LAYOUT_KEY).toByteArray();
        const bool isRestored = restoreState(state, LAYOUT_VERSION);
        if (!isRestored && !areDocksShown) restoreState(usualLayout, LAYOUT_VERSION);
        variantDock->setVisible(!variantStrip->variants().empty());
        if (!isRestored) shareOutHeights();
        // A scene that opened in the drawing mode hides the panels of that layout as well.
        if (!std::exchange(areDocksShown, true)) showDocks(false);
    });
}

// The plate gets most of the room.
void MainWindow::shareOutHeights() {
    resizeDocks({docks.front(), docks.back()}, {420, 230}, Qt::Vertical);
}

void MainWindow::showUsualLayout() {
    setDrawing(false);
    restoreState(usualLayout, LAYOUT_VERSION);
    variantDock->setVisible(!variantStrip->variants().empty());
    shareOutHeights();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!files->mayDiscard()) return event->ignore();
    showDocks(true);
    QSettings settings;
    settings.setValue(GEOMETRY_KEY, saveGeometry());
    settings.setValue(LAYOUT_KEY, saveState(LAYOUT_VERSION));
    settings.setValue(BRUSH_SIZE_KEY, bench.brush().size);
    settings.setValue(BRUSH_IS_ROUND_KEY, bench.brush().isRound);
    event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
    // The desktop may turn dark at dusk.
    if (event->type() == QEvent::PaletteChange && drawing) showTheme();
    QMainWindow::changeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().front().isLocalFile())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    files->open(event->mimeData()->urls().front().toLocalFile().toStdString());
}
