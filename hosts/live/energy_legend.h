#pragma once

#include <QWidget>
#include <optional>

#include "drawing/energy_scale.h"

using namespace voxam;

/// What the colours of a scored design mean.
class EnergyLegend : public QWidget {
    Q_OBJECT

public:
    explicit EnergyLegend(QWidget* parent = nullptr);

    void show(const std::optional<EnergyScale>& shown);

    QSize sizeHint() const override { return {420, 44}; }
    QSize minimumSizeHint() const override { return {200, 44}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<EnergyScale> scale;
};
