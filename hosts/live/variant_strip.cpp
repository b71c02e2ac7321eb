#include "variant_strip.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "action_text.h"
#include "theme.h"
#include "thumbnail.h"
#include "variant_comparison.h"

using namespace voxam;

namespace {

constexpr QSize PICTURE_SIZE(118, 74);
constexpr QSize ITEM_SIZE(262, 80);  // at least
constexpr int ITEM_MARGIN = 24;      // around picture and text

bool isDelete(const QKeyEvent& key) { return key.key() == Qt::Key_Delete; }

}  // namespace

VariantStrip::VariantStrip(QWidget* parent)
    : QWidget(parent),
      items(new QListWidget),
      restore(new QAction(tr("&Restore variant"), this)),
      compare(new QAction(tr("&Compare two variants..."), this)),
      rename(new QAction(tr("Re&name variant..."), this)),
      remove(new QAction(tr("R&emove variants..."), this)) {
    items->setFlow(QListView::LeftToRight);
    items->setWrapping(false);
    items->setIconSize(PICTURE_SIZE);
    items->setSelectionMode(QAbstractItemView::ExtendedSelection);
    items->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    items->setContextMenuPolicy(Qt::ActionsContextMenu);
    items->setAccessibleName(tr("Variants"));
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    items->setFixedHeight(ITEM_SIZE.height() + bar + 2 * items->frameWidth());
    addAction(*restore, tr("Show the selected variant on the plate again"),
              &VariantStrip::restoreSelected);
    addAction(*compare, tr("Show two selected variants side by side"),
              &VariantStrip::compareSelected);
    addAction(*rename, {}, &VariantStrip::renameSelected);
    addAction(*remove, tr("Remove the selected variants"), &VariantStrip::removeSelected);
    auto* buttons = new QVBoxLayout;
    buttons->setSpacing(2);
    for (QAction* action : {restore, compare, remove}) {
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
        buttons->addWidget(button);
    }
    buttons->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 0, 4, 4);
    layout->setSizeConstraint(QLayout::SetMinAndMaxSize);
    layout->addWidget(items, 1);
    layout->addLayout(buttons);
    connect(items, &QListWidget::itemActivated, this, &VariantStrip::restoreSelected);
    connect(items, &QListWidget::itemSelectionChanged, this, &VariantStrip::showSelection);
    items->installEventFilter(this);
    showSelection();
}

// Not shortcuts: elsewhere in the window, these keys edit the pieces on the plate.
bool VariantStrip::eventFilter(QObject* list, QEvent* event) {
    const bool isAsked = event->type() == QEvent::ShortcutOverride;
    if (!isAsked && event->type() != QEvent::KeyPress) return QWidget::eventFilter(list, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.modifiers() != Qt::NoModifier || (key.key() != Qt::Key_F2 && !isDelete(key)))
        return QWidget::eventFilter(list, event);
    event->accept();
    if (!isAsked) (isDelete(key) ? remove : rename)->trigger();
    return true;
}

void VariantStrip::addAction(QAction& action, const QString& explanation,
                             void (VariantStrip::*slot)()) {
    explain(action, explanation);
    items->QWidget::addAction(&action);
    connect(&action, &QAction::triggered, this, slot);
}

void VariantStrip::add(Variant variant) {
    append(std::move(variant));
    setModified(true);
}

void VariantStrip::open(std::deque<Variant> variants) {
    clear();
    for (Variant& variant : variants) append(std::move(variant));
}

void VariantStrip::setModified(bool isModified) {
    modified = isModified;
    emit modificationChanged();
}

void VariantStrip::append(Variant variant) {
    ++lastNumber;
    if (variant.name.isEmpty()) variant.name = tr("Variant %1").arg(lastNumber);
    kept.push_back(std::move(variant));
    auto* item = new QListWidgetItem(items);
    show(items->count() - 1);
    emit filled(true);
    items->scrollToItem(item);
}

void VariantStrip::offerScore(const ScoreResult& result) {
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const bool isOther = kept[i].revision != result.revision || *kept[i].drawn != result.design;
        if (kept[i].score || isOther) continue;
        kept[i].score = result;
        show(static_cast<int>(i));
    }
}

void VariantStrip::clear() {
    kept.clear();
    items->clear();
    lastNumber = 0;
    emit filled(false);
    setModified(false);
}

void VariantStrip::refresh() {
    for (int row = 0; row < items->count(); ++row) show(row);
}

void VariantStrip::show(int row) {
    const Variant& variant = kept[static_cast<std::size_t>(row)];
    QListWidgetItem& item = *items->item(row);
    const QString numbers = numbersOf(variant);
    item.setText(variant.name + "\n" + numbers);
    // The strip may shorten names, but not numbers.
    const int textWidth = items->fontMetrics().size(0, numbers).width();
    item.setSizeHint(
        ITEM_SIZE.expandedTo({PICTURE_SIZE.width() + textWidth + ITEM_MARGIN, ITEM_SIZE.height()}));
    item.setToolTip(
        tr("Double-click to restore. F2 renames, Delete removes. Select two with "
           "Ctrl to compare them."));
    const PlateColours& colours = isDarkNow() ? PlateColours::dark() : PlateColours::light();
    // With signs of half their size.
    const double ratio = devicePixelRatioF();
    QImage picture =
        thumbnailOf(*variant.seen, variant.material, 2 * PICTURE_SIZE, ratio, colours)
            .scaled(PICTURE_SIZE * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    item.setIcon(QIcon(QPixmap::fromImage(picture)));
}

void VariantStrip::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) refresh();
    QWidget::changeEvent(event);
}

QList<int> VariantStrip::selectedRows() const {
    QList<int> rows;
    for (const QModelIndex& index : items->selectionModel()->selectedIndexes()) rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void VariantStrip::showSelection() {
    const auto count = selectedRows().size();
    restore->setEnabled(count == 1);
    rename->setEnabled(count == 1);
    compare->setEnabled(count == 2);
    remove->setEnabled(count > 0);
}

void VariantStrip::restoreSelected() {
    const QList<int> rows = selectedRows();
    if (rows.size() == 1) emit restoreRequested(kept[static_cast<std::size_t>(rows.front())]);
}

void VariantStrip::compareSelected() {
    const QList<int> rows = selectedRows();
    if (rows.size() != 2) return;
    VariantComparison(kept[static_cast<std::size_t>(rows[0])],
                      kept[static_cast<std::size_t>(rows[1])], window())
        .exec();
}

void VariantStrip::renameSelected() {
    const QList<int> rows = selectedRows();
    if (rows.size() != 1) return;
    Variant& variant = kept[static_cast<std::size_t>(rows.front())];
    const QString name = QInputDialog::getText(window(), tr("Rename variant"), tr("Name:"),
                                               QLineEdit::Normal, variant.name);
    if (name.isEmpty()) return;
    variant.name = name;
    show(rows.front());
    setModified(true);
}

void VariantStrip::removeSelected() {
    QList<int> rows = selectedRows();
    if (rows.empty()) return;
    const auto answer = QMessageBox::question(
        window(), tr("Remove variants?"),
        tr("Remove %n variant(s)? This cannot be undone.", nullptr, static_cast<int>(rows.size())),
        QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Yes) return;
    std::reverse(rows.begin(), rows.end());
    for (const int row : rows) {
        kept.erase(kept.begin() + row);
        delete items->takeItem(row);
    }
    emit filled(!kept.empty());
    setModified(true);
}
