#include "brush_bar.h"

#include <QActionGroup>
#include <QLabel>
#include <array>

#include "action_text.h"
#include "field_manners.h"
#include "icons.h"

BrushBar::BrushBar(Workbench& workbench)
    : QToolBar(tr("Brush")),
      bench(workbench),
      size(new QSpinBox),
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
    size->setRange(1, Brush::MAX_SIZE);
    size->setSuffix(tr(" wide"));
    size->setAccessibleName(tr("Size of the brush in elements"));
    size->setToolTip(tr("Size of the brush in elements ([ and ])"));
    FieldManners::readBothSigns(*size);
    addWidget(size);

    const auto resize = [this](int by) {
        bench.setBrush({bench.brush().size + by, bench.brush().isRound});
    };
    connect(smaller, &QAction::triggered, this, [=] { resize(-1); });
    connect(larger, &QAction::triggered, this, [=] { resize(1); });
    connect(shapes, &QActionGroup::triggered, this, [this](QAction* shape) {
        if (shape == rectangle) return bench.setShape(Shape::RECTANGLE);
        if (shape == disc) return bench.setShape(Shape::DISC);
        bench.setBrush({bench.brush().size, shape == round});
        bench.setShape(Shape::STROKE);
    });
    connect(size, &QSpinBox::valueChanged, this, [this](int value) {
        bench.setBrush({value, bench.brush().isRound});
    });
    connect(&bench, &Workbench::brushChanged, this, &BrushBar::showBrush);
    showBrush();
}

void BrushBar::setPaintsShapes(bool isToBe) {
    paintsShapes = isToBe;
    showBrush();
}

void BrushBar::showBrush() {
    size->setValue(bench.brush().size);
    for (QAction* shape : {rectangle, disc}) shape->setEnabled(paintsShapes);
    QAction* const brush = bench.brush().isRound ? round : square;
    const std::array<QAction*, 3> byShape = {brush, rectangle, disc};
    byShape[paintsShapes ? static_cast<std::size_t>(bench.shape()) : 0]->setChecked(true);
}
