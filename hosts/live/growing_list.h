#pragma once

#include <QListWidget>

/// A list that grows with its rows while its panel has room. In a low panel it shows a few rows and
/// scrolls.
class GrowingList : public QListWidget {
public:
    GrowingList();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void updateGeometries() override;

private:
    int heightOf(int pixels) const { return pixels + 2 * frameWidth(); }
};
