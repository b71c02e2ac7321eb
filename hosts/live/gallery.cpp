#include "gallery.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "export/scene_file.h"
#include "plate_image.h"
#include "plate_painter.h"
#include "scene_places.h"

using namespace voxam;

namespace fs = std::filesystem;

namespace {

constexpr QSize PICTURE_SIZE(216, 140);
constexpr double MARGIN = 26;  // pixels around a plate
constexpr int PATH_ROLE = Qt::UserRole;

/// What a scene looks like before it is run: its plate with loads and supports, and the design that
/// is kept beside it, if there is one.
QPixmap pictureOf(const Scene& scene, const fs::path& design, double pixelRatio) {
    QPixmap pixmap(PICTURE_SIZE * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    const PlateColours& colours = PlateColours::light();
    pixmap.fill(colours.surroundings);
    PlateTransform transform;
    transform.scale = std::min((PICTURE_SIZE.width() - 2 * MARGIN) / scene.width,
                               (PICTURE_SIZE.height() - 2 * MARGIN) / scene.height);
    transform.origin = {0.5 * (PICTURE_SIZE.width() - transform.scale * scene.width),
                        0.5 * (PICTURE_SIZE.height() - transform.scale * scene.height)};
    PlateLook look;
    look.outlines = PlateOutlines(scene);
    look.forces = ForceScale(scene);
    look.material = QImage(QString::fromStdString(design.string()));
    if (look.material.isNull() && scene.densities) {
        look.material = drawingImage(*scene.densities, std::nullopt, colours);
        look.isSmooth = false;
    }
    QPainter painter(&pixmap);
    PlatePainter(painter, transform, colours).draw(scene, look);
    return pixmap;
}

}  // namespace

Gallery::Gallery(QWidget* parent) : QDialog(parent), list(new QListWidget) {
    setWindowTitle(tr("Gallery"));
    resize(780, 620);
    list->setViewMode(QListView::IconMode);
    list->setResizeMode(QListView::Adjust);
    list->setMovement(QListView::Static);
    list->setIconSize(PICTURE_SIZE);
    list->setSpacing(8);
    list->setWordWrap(true);
    list->setUniformItemSizes(true);
    list->setAccessibleName(tr("Scenes that come with the program"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list, &QListWidget::itemActivated, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addWidget(buttons);
    fill();
    list->setCurrentRow(0);
    buttons->button(QDialogButtonBox::Open)->setEnabled(list->count() > 0);
}

void Gallery::fill() {
    std::error_code error;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(shippedScenes(), error))
        if (entry.path().extension() == ".json") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        try {
            const Scene scene = readScene(file);
            const fs::path design = file.parent_path() / "gallery" / file.stem().concat(".png");
            auto* item = new QListWidgetItem(QIcon(pictureOf(scene, design, devicePixelRatioF())),
                                             QString::fromStdString(scene.title), list);
            item->setToolTip(QString::fromStdString(scene.description));
            item->setData(Qt::AccessibleDescriptionRole, item->toolTip());
            item->setData(PATH_ROLE, QString::fromStdString(file.string()));
        } catch (const std::exception&) {
            // A broken file tells what is wrong when it is opened, not here.
        }
    }
}

fs::path Gallery::chosen() const {
    const QListWidgetItem* item = list->currentItem();
    return item == nullptr ? fs::path() : fs::path(item->data(PATH_ROLE).toString().toStdString());
}
