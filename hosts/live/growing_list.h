#pragma once

#include <QListWidget>

/// A list of a panel that grows with its rows while the panel has room for them. Where the panel
/// is low, it keeps a few rows in sight and scrolls.
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
