#pragma once

#include <QActionGroup>
#include <QObject>
#include <QToolBar>
#include <memory>
#include <vector>

#include "icons.h"
#include "plate_view.h"
#include "tool.h"

/// The tools of both modes with their actions. One tool is in the hand.
class ToolBox : public QObject {
    Q_OBJECT

public:
    ToolBox(Workbench& workbench, PlateView& plateView);
    ~ToolBox() override;

    /// Tools for editing the plate, or for drawing a design.
    const std::vector<QAction*>& plateActions() const { return ofPlate; }
    const std::vector<QAction*>& drawingActions() const { return ofDrawing; }
    /// Draw on both sides of the plate's middle.
    const std::vector<QAction*>& mirrorActions() const { return mirrors; }

    /// Lets setDrawing() take up the first tool of either mode.
    void forgetLastTools();
    /// Shows the tools of one mode and takes up the one that was used there last.
    void setDrawing(bool draws);

signals:
    void taken(const Tool& tool);

private:
    void add(std::unique_ptr<Tool> tool, Glyph glyph, const QString& name, const QString& key,
             const QString& explanation, std::vector<QAction*>& mode);
    void addPlateTools(const ToolSite& site);
    void addDrawingTools(const ToolSite& site);
    void addMirrors(Workbench& bench);

    PlateView& view;
    std::vector<std::unique_ptr<Tool>> tools;
    QActionGroup group;
    std::vector<QAction*> ofPlate;
    std::vector<QAction*> ofDrawing;
    std::vector<QAction*> mirrors;
    Tool* eraserOfPlate = nullptr;
    Tool* eraserOfDrawing = nullptr;
    QAction* lastOfPlate = nullptr;
    QAction* lastOfDrawing = nullptr;
};
