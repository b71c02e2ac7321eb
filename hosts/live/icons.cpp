#include "icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <cmath>

#include "plate_colours.h"

namespace {

/// Draws a glyph on a square of 24 by 24.
class GlyphPainter {
public:
    GlyphPainter(QPainter& target, const QColor& inkColour) : painter(target), ink(inkColour) {
        painter.setRenderHint(QPainter::Antialiasing);
        stroke();
    }

    void draw(Glyph glyph) {
        switch (glyph) {
            case Glyph::OPEN:
                return open();
            case Glyph::SAVE:
                return save();
            case Glyph::UNDO:
                return turn(false);
            case Glyph::REDO:
                return turn(true);
            case Glyph::PLAY:
                return fillPolygon({{7, 4}, {20, 12}, {7, 20}});
            case Glyph::PAUSE:
                return pause();
            case Glyph::STEP:
                return step();
            case Glyph::RESTART:
                return restart();
            case Glyph::SELECT:
                return pointer();
            case Glyph::ADD_LOAD:
                return addLoad();
            case Glyph::PIN:
                return support(0, true);
            case Glyph::ROLLER_X:
                return support(90, false);
            case Glyph::ROLLER_Y:
                return support(0, false);
            case Glyph::KEEP_VOID:
                return cells(0, Qt::BDiagPattern);
            case Glyph::KEEP_SOLID:
                return cells(1, Qt::SolidPattern);
            case Glyph::KEEP_SECOND_SOLID:
                return cells(2, Qt::Dense4Pattern);
            case Glyph::BLOB:
                return blob();
            case Glyph::ERASER:
                return rubber(PlateColours::light().fault);
            case Glyph::RUBBER:
                return rubber(ink);
            case Glyph::PENCIL:
                return pencil();
            case Glyph::LINE:
                return line();
            case Glyph::ROUND_BRUSH:
                return fillEllipse(QRectF(5, 5, 14, 14));
            case Glyph::SQUARE_BRUSH:
                return painter.fillRect(QRectF(5, 5, 14, 14), ink);
            case Glyph::FIT:
                return fitSign();
            case Glyph::ZOOM_IN:
                return lens(true);
            case Glyph::ZOOM_OUT:
                return lens(false);
            case Glyph::GALLERY:
                return gallery();
            case Glyph::DRAW_MODE:
                return drawMode();
        }
    }

private:
    void stroke(double width = 1.8) {
        painter.setPen(QPen(ink, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
    }

    void fillPolygon(const QPolygonF& corners, const QColor& colour) {
        painter.setPen(QPen(colour, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(colour);
        painter.drawPolygon(corners);
    }
    void fillPolygon(const QPolygonF& corners) { fillPolygon(corners, ink); }

    void pointer() {
        fillPolygon({{6, 3}, {6, 19}, {10, 15.4}, {12.6, 21}, {15, 20}, {12.5, 14.4}, {18, 14.2}});
    }

    void fillEllipse(const QRectF& box) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(box);
    }

    void open() {
        painter.drawPolygon(QPolygonF({{3, 6}, {9, 6}, {11, 8}, {20, 8}, {20, 19}, {3, 19}}));
        painter.drawLine(QPointF(3, 12), QPointF(20, 12));
    }

    void save() {
        painter.drawPolygon(QPolygonF({{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}}));
        painter.drawRect(QRectF(8, 4, 8, 5));
        painter.drawRect(QRectF(7, 13, 10, 7));
    }

    void turn(bool isMirrored) {
        if (isMirrored) painter.setTransform(QTransform(-1, 0, 0, 1, 24, 0), true);
        QPainterPath path(QPointF(5, 10));
        path.lineTo(14, 10);
        path.arcTo(QRectF(9.5, 10, 9, 9), 90, -180);
        path.lineTo(9, 19);
        painter.drawPath(path);
        painter.drawPolyline(QPolygonF({{9, 5.5}, {4.5, 10}, {9, 14.5}}));
    }

    void pause() {
        painter.fillRect(QRectF(6, 5, 4, 14), ink);
        painter.fillRect(QRectF(14, 5, 4, 14), ink);
    }

    void step() {
        fillPolygon({{5, 5}, {15, 12}, {5, 19}});
        painter.fillRect(QRectF(17, 5, 3, 14), ink);
    }

    void restart() {
        QPainterPath path;
        path.arcMoveTo(QRectF(5, 5, 14, 14), 60);
        path.arcTo(QRectF(5, 5, 14, 14), 60, 290);
        painter.drawPath(path);
        fillPolygon({{14, 2}, {20, 6}, {13.5, 9.5}});
    }

    void addLoad() {
        const QColor blue =
            (ink.lightness() > 128 ? PlateColours::dark() : PlateColours::light()).load(0);
        painter.setPen(QPen(blue, 2.4, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(9, 3), QPointF(9, 14));
        fillPolygon({{4.5, 13}, {13.5, 13}, {9, 20.5}}, blue);
        stroke();
        painter.drawLine(QPointF(18, 5), QPointF(18, 11));
        painter.drawLine(QPointF(15, 8), QPointF(21, 8));
    }

    void support(double degrees, bool isPin) {
        painter.translate(12, 12);
        painter.rotate(degrees);
        painter.translate(-12, -12);
        fillPolygon({{12, 4}, {18, isPin ? 16.0 : 13.0}, {6, isPin ? 16.0 : 13.0}});
        if (!isPin) fillEllipse(QRectF(10, 14, 4, 4));
        stroke();
        painter.drawLine(QPointF(4, 20), QPointF(20, 20));
    }

    void cells(std::size_t kind, Qt::BrushStyle style) {
        const QColor colour = PlateColours::light().passive[kind];
        painter.setPen(QPen(colour, 2.2));
        painter.setBrush(QBrush(kind == 1 ? mixed(colour, ink, 0.35) : colour, style));
        painter.drawPolygon(
            QPolygonF({{4, 9}, {10, 9}, {10, 4}, {20, 4}, {20, 15}, {15, 15}, {15, 20}, {4, 20}}));
    }

    void blob() {
        painter.setPen(QPen(PlateColours::light().blob.darker(130), 1.8));
        painter.setBrush(PlateColours::light().blob);
        QPainterPath path(QPointF(5, 12));
        path.cubicTo(5, 4, 13, 3, 16, 6);
        path.cubicTo(20, 8, 21, 15, 17, 18);
        path.cubicTo(12, 22, 5, 19, 5, 12);
        painter.drawPath(path);
    }

    void rubber(const QColor& colour) {
        painter.drawLine(QPointF(9, 20.5), QPointF(21, 20.5));
        painter.drawPolygon(QPolygonF({{3, 15}, {13, 5}, {20, 12}, {12, 20}, {8, 20}}));
        fillPolygon({{9, 9.5}, {13, 5.5}, {19.5, 12}, {15.5, 16}}, colour);
    }

    void pencil() {
        painter.drawPolygon(QPolygonF({{4, 20}, {5.5, 15}, {16, 4.5}, {19.5, 8}, {9, 18.5}}));
        fillPolygon({{4, 20}, {5, 17}, {7, 19}});
    }

    void line() {
        painter.setPen(QPen(ink, 3.2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(5, 19), QPointF(19, 5));
    }

    void fitSign() {
        for (const double degrees : {0.0, 90.0, 180.0, 270.0}) {
            painter.save();
            painter.translate(12, 12);
            painter.rotate(degrees);
            painter.drawPolyline(QPolygonF({{-8, -3}, {-8, -8}, {-3, -8}}));
            painter.restore();
        }
        painter.drawRect(QRectF(8.5, 8.5, 7, 7));
    }

    void lens(bool isPlus) {
        painter.drawEllipse(QRectF(4, 4, 12, 12));
        painter.drawLine(QPointF(14.5, 14.5), QPointF(20, 20));
        painter.drawLine(QPointF(7.5, 10), QPointF(12.5, 10));
        if (isPlus) painter.drawLine(QPointF(10, 7.5), QPointF(10, 12.5));
    }

    void gallery() {
        for (const QPointF corner :
             {QPointF(4, 4), QPointF(13.5, 4), QPointF(4, 13.5), QPointF(13.5, 13.5)})
            painter.drawRect(QRectF(corner, QSizeF(6.5, 6.5)));
    }

    void drawMode() {
        painter.drawRect(QRectF(3, 6, 18, 12));
        painter.setPen(QPen(PlateColours::light().fault, 2.4, Qt::SolidLine, Qt::RoundCap));
        painter.drawPolyline(QPolygonF({{6, 9}, {17, 12}, {6, 15}}));
    }

    QPainter& painter;
    QColor ink;
};

class GlyphEngine : public QIconEngine {
public:
    explicit GlyphEngine(Glyph drawn) : glyph(drawn) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 24.0, rect.height() / 24.0);
        if (mode == QIcon::Disabled) painter->setOpacity(0.55);
        GlyphPainter(*painter, palette.color(group, QPalette::WindowText)).draw(glyph);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    Glyph glyph;
};

}  // namespace

QIcon icon(Glyph glyph) { return QIcon(new GlyphEngine(glyph)); }
