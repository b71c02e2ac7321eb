#pragma once

#include <optional>

#include "tool.h"

/// A brush that leaves something on its way.
class BrushTool : public Tool {
public:
    using Tool::Tool;

    bool press(const Hand& hand) override;
    void drag(const Hand& hand) override;
    void paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const override;

protected:
    virtual void paint(QPointF from, QPointF to) = 0;
    virtual QColor hintColour(const PlateColours& colours) const { return colours.hand; }

private:
    QPointF last;
};

/// Holds nodes in x, in y or in both directions.
class SupportTool : public BrushTool {
public:
    SupportTool(const ToolSite& toolSite, bool holdsX, bool holdsY)
        : BrushTool(toolSite), fixX(holdsX), fixY(holdsY) {}

    void paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const override;
    QString describe(const Hand& hand) const override;

protected:
    void paint(QPointF from, QPointF to) override;

private:
    bool fixX;
    bool fixY;
};

/// Keeps elements void, solid, or solid of a second kind.
class PassiveTool : public BrushTool {
public:
    PassiveTool(const ToolSite& toolSite, PassiveKind passiveKind)
        : BrushTool(toolSite), kind(passiveKind) {}

protected:
    void paint(QPointF from, QPointF to) override;
    QColor hintColour(const PlateColours& colours) const override;

private:
    PassiveKind kind;
};

/// Adds elements to the blob, from where it is now.
class BlobTool : public BrushTool {
public:
    using BrushTool::BrushTool;

protected:
    void paint(QPointF from, QPointF to) override;
    QColor hintColour(const PlateColours& colours) const override { return colours.blob; }
};

/// Takes away supports, loads, passive elements and blob.
class EraseTool : public BrushTool {
public:
    using BrushTool::BrushTool;

protected:
    void paint(QPointF from, QPointF to) override;
    QColor hintColour(const PlateColours& colours) const override { return colours.fault; }
};

/// Draws or rubs out the design that is to be scored.
class PencilTool : public BrushTool {
public:
    PencilTool(const ToolSite& toolSite, bool drawsMaterial)
        : BrushTool(toolSite), draws(drawsMaterial) {}

protected:
    void paint(QPointF from, QPointF to) override;
    QColor hintColour(const PlateColours& colours) const override;

private:
    bool draws;
};

/// Draws a straight line when the button is released.
class LineTool : public Tool {
public:
    using Tool::Tool;

    bool press(const Hand& hand) override;
    void drag(const Hand& hand) override { end = hand.plate; }
    void release(const Hand& hand) override;
    void cancel() override { start.reset(); }
    void paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const override;

private:
    std::optional<QPointF> start;
    QPointF end;
};
