#include "growing_list.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int LEAST_ROWS = 3;
constexpr int ROW_GAP = 3;  // pixels

}  // namespace

GrowingList::GrowingList() {
    setWordWrap(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
}

QSize GrowingList::sizeHint() const {
    // Rows may take more than one line.
    return {QListWidget::sizeHint().width(),
            std::max(minimumSizeHint().height(), heightOf(contentsSize().height()))};
}

QSize GrowingList::minimumSizeHint() const {
    return {QListWidget::minimumSizeHint().width(),
            heightOf(LEAST_ROWS * (fontMetrics().height() + ROW_GAP))};
}

void GrowingList::updateGeometries() {
    QListWidget::updateGeometries();
    updateGeometry();
}
