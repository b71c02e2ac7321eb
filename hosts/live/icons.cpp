#include "icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include "plate_colours.h"

namespace {

/// The files of icons/, in the order of Glyph.
constexpr const char* NAMES[] = {"open",     "save",        "undo",         "redo",
                                 "play",     "pause",       "step",         "restart",
                                 "select",   "add-load",    "pin",          "roller-x",
                                 "roller-y", "keep-void",   "keep-solid",   "keep-second-solid",
                                 "blob",     "eraser",      "pencil",       "line",
                                 "rubber",   "round-brush", "square-brush", "rectangle",
                                 "disc",     "fit",         "zoom-in",      "zoom-out",
                                 "gallery",  "draw-mode",   "keep-variant"};

/// In the files, black is the ink and blue the colour of a load.
QByteArray drawingOf(Glyph glyph, const QColor& ink) {
    QFile file(QString(":/icons/%1.svg").arg(NAMES[static_cast<std::size_t>(glyph)]));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const bool isDark = ink.lightness() > 128;
    const QColor load = (isDark ? PlateColours::dark() : PlateColours::light()).load(0);
    return file.readAll()
        .replace("#00f", load.name().toLatin1())
        .replace("\"#000\"", '"' + ink.name().toLatin1() + '"');
}

class GlyphEngine : public QIconEngine {
public:
    explicit GlyphEngine(Glyph drawn) : glyph(drawn) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const bool isDisabled = mode == QIcon::Disabled;
        const QColor ink = QGuiApplication::palette().color(
            isDisabled ? QPalette::Disabled : QPalette::Active, QPalette::WindowText);
        painter->save();
        if (isDisabled) painter->setOpacity(0.55);
        QSvgRenderer(drawingOf(glyph, ink)).render(painter, rect);
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

QIcon icon(Glyph glyph) {
    Q_INIT_RESOURCE(icons);  // of a static library
    return QIcon(new GlyphEngine(glyph));
}

QIcon applicationIcon() {
    Q_INIT_RESOURCE(icons);
    return QIcon(":/desktop/voxam-live.svg");
}
