#include "brush_bar.h"

#include <QActionGroup>
#include <QLabel>
#include <QSpinBox>
#include <array>

#include "action_text.h"
#include "icons.h"

BrushBar::BrushBar(Workbench& bench)
    : QToolBar(tr("Brush")),
      smaller(new QAction(tr("S&maller brush"), this)),
      larger(new QAction(tr("&Larger brush"), this)),
      round(new QAction(icon(Glyph::ROUND_BRUSH), tr("&Round brush"), this)),
      square(new QAction(icon(Glyph::SQUARE_BRUSH), tr("S&quare brush"), this)),
      rectangle(new QAction(icon(Glyph::RECTANGLE), tr("Re&ctangle"), this)),
      disc(new QAction(icon(Glyph::DISC), tr("&Disc"), this)) {
    setObjectName("brush");
    smaller->setShortcut(QKeySequence(Qt::Key_BracketLeft));
    larger->setShortcut(QKeySequence(Qt::Key_BracketRight));
    explain(*smaller, {});
    explain(*larger, {});
    explain(*round, tr("Paint with a disc"));
    explain(*square, tr("Paint with a square"));
    rectangle->setShortcut(QKeySequence("R"));
    disc->setShortcut(QKeySequence("C"));
    explain(*rectangle, tr("Paint elements by a rectangle, from corner to corner"));
    explain(*disc, tr("Paint elements by a disc, from its centre to its border"));
    auto* shapes = new QActionGroup(this);
    for (QAction* shape : {round, square, rectangle, disc}) {
        shape->setCheckable(true);
        shapes->addAction(shape);
        addAction(shape);
    }
    auto* size = new QSpinBox;
    size->setRange(1, Brush::MAX_SIZE);
    size->setSuffix(tr(" wide"));
    size->setAccessibleName(tr("Size of the brush in elements"));
    size->setToolTip(tr("Size of the brush in elements ([ and ])"));
    addWidget(size);

    const auto resize = [&bench](int by) {
        bench.setBrush({bench.brush().size + by, bench.brush().isRound});
    };
    connect(smaller, &QAction::triggered, this, [=] { resize(-1); });
    connect(larger, &QAction::triggered, this, [=] { resize(1); });
    connect(shapes, &QActionGroup::triggered, this, [this, &bench](QAction* shape) {
        if (shape == rectangle) return bench.setShape(Shape::RECTANGLE);
        if (shape == disc) return bench.setShape(Shape::DISC);
        bench.setBrush({bench.brush().size, shape == round});
        bench.setShape(Shape::STROKE);
    });
    connect(size, &QSpinBox::valueChanged, this, [&bench](int value) {
        bench.setBrush({value, bench.brush().isRound});
    });
    const auto show = [this, size, &bench] {
        size->setValue(bench.brush().size);
        QAction* const brush = bench.brush().isRound ? round : square;
        const std::array<QAction*, 3> byShape = {brush, rectangle, disc};
        byShape[static_cast<std::size_t>(bench.shape())]->setChecked(true);
    };
    connect(&bench, &Workbench::brushChanged, this, show);
    show();
}
