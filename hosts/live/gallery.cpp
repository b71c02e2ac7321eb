#include "gallery.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <map>

#include "export/design_file.h"
#include "export/scene_file.h"
#include "format/symmetry.h"
#include "format/timeline.h"
#include "scene_places.h"
#include "theme.h"
#include "thumbnail.h"

using namespace voxam;

namespace fs = std::filesystem;

namespace {

constexpr QSize PICTURE_SIZE(200, 124);
constexpr int PADDING = 10;  // pixels
constexpr int PATH_ROLE = Qt::UserRole;
constexpr int PURPOSE_ROLE = Qt::UserRole + 1;
constexpr int DRAW_ROLE = Qt::UserRole + 2;
constexpr const char* LEVEL_KEY = "gallery/level";

/// A scene with its design: at the end of a run with the design that is kept for its picture, or
/// else with the design in the scene. A scene to draw has an empty plate.
QImage pictureOf(const GalleryScene& shown, double pixelRatio, const PlateColours& colours) {
    const fs::path& file = shown.file;
    Scene scene = readScene(file);
    if (shown.isToDraw()) return thumbnailOf(scene, Field(), PICTURE_SIZE, pixelRatio, colours);
    const fs::path kept = galleryDesignOf(file);
    std::error_code error;
    if (!fs::is_regular_file(kept, error))
        return thumbnailOf(scene, scene.densities.value_or(Field()), PICTURE_SIZE, pixelRatio,
                           colours);
    for (const Change& change : std::vector(scene.timeline)) apply(change, scene);
    // The program writes whole designs.
    scene = wholeOf(scene);
    return thumbnailOf(scene, readDesignPng(kept, scene.width, scene.height), PICTURE_SIZE,
                       pixelRatio, colours);
}

/// A picture, and next to it a title with a sentence below.
class SceneDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {PICTURE_SIZE.width() + 2 * PADDING, PICTURE_SIZE.height() + PADDING};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        row.text.clear();
        row.icon = {};
        row.widget->style()->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
        const QRect picture(row.rect.topLeft() + QPoint(PADDING, PADDING / 2), PICTURE_SIZE);
        const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
        if (icon.isNull())
            painter->fillRect(picture, row.palette.color(QPalette::AlternateBase));
        else
            icon.paint(painter, picture);
        painter->save();
        const bool isSelected = row.state.testFlag(QStyle::State_Selected);
        painter->setPen(row.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
        QFont bold = row.font;
        bold.setBold(true);
        const int height = QFontMetrics(bold).height();
        const QRect words(QPoint(picture.right() + 2 * PADDING, picture.top() + PADDING),
                          QPoint(row.rect.right() - PADDING, picture.bottom()));
        painter->setFont(bold);
        painter->drawText(words, Qt::AlignLeft | Qt::AlignTop,
                          index.data(Qt::DisplayRole).toString());
        painter->setFont(row.font);
        painter->drawText(words.adjusted(0, height + PADDING / 2, 0, 0),
                          Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                          index.data(PURPOSE_ROLE).toString());
        painter->restore();
    }
};

}  // namespace

Gallery::Gallery(QWidget* parent) : QDialog(parent), levels(new QTabWidget) {
    setWindowTitle(tr("Gallery"));
    resize(700, 670);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(levels);
    layout->addWidget(buttons);
    fill();
    buttons->button(QDialogButtonBox::Open)->setEnabled(levels->count() > 0);
    connect(levels, &QTabWidget::currentChanged, this,
            [](int level) { QSettings().setValue(LEVEL_KEY, level); });
    levels->setCurrentIndex(QSettings().value(LEVEL_KEY, 0).toInt());
    if (auto* list = levels->currentWidget()) list->setFocus();
}

Gallery::~Gallery() { painters.clear(); }

QListWidget* Gallery::addLevel(GalleryLevel level) {
    auto* page = new QWidget;
    auto* list = new QListWidget;
    page->setFocusProxy(list);
    list->setItemDelegate(new SceneDelegate(list));
    list->setUniformItemSizes(true);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list->setAccessibleName(tr("Scenes: %1").arg(nameOf(level)));
    connect(list, &QListWidget::itemActivated, this, &QDialog::accept);
    auto* purpose = new QLabel(purposeOf(level));
    purpose->setWordWrap(true);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(purpose);
    layout->addWidget(list);
    levels->addTab(page, nameOf(level));
    return list;
}

void Gallery::fill() {
    std::map<GalleryLevel, QListWidget*> lists;
    for (const GalleryScene& scene : galleryScenes(shippedScenes())) {
        QListWidget*& list = lists[scene.level];
        if (list == nullptr) list = addLevel(scene.level);
        addScene(*list, scene);
    }
    for (const auto& [level, list] : lists) list->setCurrentRow(0);
}

void Gallery::addScene(QListWidget& list, const GalleryScene& scene) {
    auto* item = new QListWidgetItem(scene.title, &list);
    item->setData(PURPOSE_ROLE, scene.purpose);
    item->setData(Qt::AccessibleDescriptionRole, scene.purpose);
    item->setData(PATH_ROLE, QString::fromStdString(scene.file.string()));
    item->setData(DRAW_ROLE, scene.isToDraw());
    const PlateColours& colours = isDarkNow() ? PlateColours::dark() : PlateColours::light();
    const int row = list.row(item);
    painters.start([this, &list, row, &colours, scene, ratio = devicePixelRatioF()] {
        QImage picture;
        try {
            picture = pictureOf(scene, ratio, colours);
        } catch (const std::exception&) {
            // Opening a broken file reports its fault.
            return;
        }
        QMetaObject::invokeMethod(
            this,
            [&list, row, picture] { list.item(row)->setIcon(QIcon(QPixmap::fromImage(picture))); },
            Qt::QueuedConnection);
    });
}

const QListWidgetItem* Gallery::chosenItem() const {
    const QWidget* page = levels->currentWidget();
    const auto* list = page == nullptr ? nullptr : page->findChild<QListWidget*>();
    return list == nullptr ? nullptr : list->currentItem();
}

bool Gallery::isChosenToDraw() const {
    const QListWidgetItem* item = chosenItem();
    return item != nullptr && item->data(DRAW_ROLE).toBool();
}

fs::path Gallery::chosen() const {
    const QListWidgetItem* item = chosenItem();
    return item == nullptr ? fs::path() : fs::path(item->data(PATH_ROLE).toString().toStdString());
}
