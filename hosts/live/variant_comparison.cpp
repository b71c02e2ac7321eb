#include "variant_comparison.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>

#include "theme.h"
#include "thumbnail.h"

using namespace voxam;

namespace {

/// A variant as large as there is room.
class VariantPicture : public QWidget {
public:
    explicit VariantPicture(const Variant& variant)
        : scene(variant.seen), material(variant.material) {
        setMinimumSize(240, 180);
        setAccessibleName(variant.name);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        if (picture.deviceIndependentSize().toSize() != size())
            picture = thumbnailOf(*scene, material, size(), devicePixelRatioF(),
                                  isDarkNow() ? PlateColours::dark() : PlateColours::light());
        QPainter(this).drawImage(0, 0, picture);
    }

private:
    std::shared_ptr<const Scene> scene;
    Field material;
    QImage picture;
};

}  // namespace

VariantComparison::VariantComparison(const Variant& one, const Variant& other, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Compare variants"));
    resize(860, 460);
    auto* layout = new QGridLayout(this);
    layout->setRowStretch(1, 1);
    int column = 0;
    for (const Variant* variant : {&one, &other}) {
        auto* name = new QLabel("<b>" + variant->name.toHtmlEscaped() + "</b>");
        auto* numbers = new QLabel(numbersOf(*variant));
        numbers->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(name, 0, column);
        layout->addWidget(new VariantPicture(*variant), 1, column);
        layout->addWidget(numbers, 2, column);
        layout->setColumnStretch(column, 1);
        ++column;
    }
    auto* verdict = new QLabel(comparisonOf(one, other));
    QFont bold = verdict->font();
    bold.setBold(true);
    verdict->setFont(bold);
    verdict->setWordWrap(true);
    layout->addWidget(verdict, 3, 0, 1, 2);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons, 4, 0, 1, 2);
}
