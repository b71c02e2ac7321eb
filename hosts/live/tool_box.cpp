#include "tool_box.h"

#include <utility>

#include "action_text.h"
#include "load_tools.h"
#include "paint_tools.h"

ToolBox::ToolBox(Workbench& workbench, PlateView& plateView) : view(plateView), group(nullptr) {
    const ToolSite site = {workbench, plateView.transform()};
    addPlateTools(site);
    addDrawingTools(site);
    addMirrors(workbench);
    forgetLastTools();
    setDrawing(false);
}

ToolBox::~ToolBox() {
    view.setTool(nullptr);
    view.setEraser(nullptr);
}

void ToolBox::addMirrors(Workbench& bench) {
    const auto addMirror = [&](const QString& name, const QString& key,
                               const QString& explanation) {
        auto* action = new QAction(name, this);
        action->setCheckable(true);
        action->setShortcut(QKeySequence(key));
        explain(*action, explanation);
        mirrors.push_back(action);
        connect(action, &QAction::toggled, this, [this, &bench] {
            bench.setMirror({mirrors[0]->isChecked(), mirrors[1]->isChecked()});
        });
    };
    addMirror(tr("Mirror left and right"), "M",
              tr("Draw the same on the other side of the middle"));
    addMirror(tr("Mirror top and bottom"), "Shift+M",
              tr("Draw the same above and below the middle"));
}

void ToolBox::addPlateTools(const ToolSite& site) {
    add(std::make_unique<SelectTool>(site), Glyph::SELECT, tr("Select and drag"), "V",
        tr("Drag loads, supports and kept areas, with Alt copies of them. The other end of an "
           "arrow turns and scales the load. Ctrl selects several, by clicks or by a frame. "
           "Keys: N selects the next one, arrows move it, Alt with arrows turns and scales a load"),
        ofPlate);
    add(std::make_unique<LoadTool>(site), Glyph::ADD_LOAD, tr("Add load"), "L",
        tr("Press at a node, and drag to where the load pulls"), ofPlate);
    add(supportTool(site, true, true), Glyph::PIN, tr("Support"), "S",
        tr("Hold nodes in both directions"), ofPlate);
    add(supportTool(site, true, false), Glyph::ROLLER_X, tr("Support in x"), "X",
        tr("Hold nodes in x; they may slide up and down"), ofPlate);
    add(supportTool(site, false, true), Glyph::ROLLER_Y, tr("Support in y"), "Y",
        tr("Hold nodes in y; they may slide sideways"), ofPlate);
    add(passiveTool(site, PassiveKind::VOID), Glyph::KEEP_VOID, tr("Keep void"), "O",
        tr("Elements that stay empty"), ofPlate);
    add(passiveTool(site, PassiveKind::SOLID), Glyph::KEEP_SOLID, tr("Keep solid"), "K",
        tr("Elements that stay solid"), ofPlate);
    add(passiveTool(site, PassiveKind::SECOND_SOLID), Glyph::KEEP_SECOND_SOLID,
        tr("Keep second solid"), "J", tr("Elements that stay solid, of a second kind"), ofPlate);
    add(blobTool(site), Glyph::BLOB, tr("Blob"), "B",
        tr("A hole that keeps its size and, when it moves, finds its place"), ofPlate);
    add(eraseTool(site), Glyph::ERASER, tr("Erase"), "E",
        tr("Take away loads, supports, kept elements and blob"), ofPlate);
    eraserOfPlate = tools.back().get();
}

void ToolBox::addDrawingTools(const ToolSite& site) {
    add(pencilTool(site, true), Glyph::PENCIL, tr("Draw"), "D", tr("Draw material with the brush"),
        ofDrawing);
    add(lineTool(site), Glyph::LINE, tr("Line"), "I",
        tr("Draw a straight bar, as thick as the brush"), ofDrawing);
    add(pencilTool(site, false), Glyph::RUBBER, tr("Rub out"), "U",
        tr("Take material away with the brush; so does the right button"), ofDrawing);
    eraserOfDrawing = tools.back().get();
}

void ToolBox::add(std::unique_ptr<Tool> tool, Glyph glyph, const QString& name, const QString& key,
                  const QString& explanation, std::vector<QAction*>& mode) {
    auto* action = new QAction(icon(glyph), name, this);
    action->setCheckable(true);
    action->setShortcut(QKeySequence(key));
    explain(*action, explanation);
    group.addAction(action);
    mode.push_back(action);
    Tool* const inHand = tool.get();
    tools.push_back(std::move(tool));
    QAction*& last = &mode == &ofPlate ? lastOfPlate : lastOfDrawing;
    connect(action, &QAction::triggered, this, [this, action, inHand, &last] {
        last = action;
        view.setTool(inHand);
        view.setFocus();
        emit taken(*inHand);
    });
}

void ToolBox::forgetLastTools() {
    lastOfPlate = ofPlate.front();
    lastOfDrawing = ofDrawing.front();
}

void ToolBox::setDrawing(bool draws) {
    for (QAction* action : ofPlate) {
        action->setVisible(!draws);
        action->setEnabled(!draws);
    }
    for (QAction* action : ofDrawing) {
        action->setVisible(draws);
        action->setEnabled(draws);
    }
    for (QAction* action : mirrors) action->setEnabled(draws);
    (draws ? lastOfDrawing : lastOfPlate)->trigger();
    view.setEraser(draws ? eraserOfDrawing : eraserOfPlate);
    view.setMenu(!draws);
}
