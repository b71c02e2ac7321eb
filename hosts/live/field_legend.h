#pragma once

#include <QWidget>
#include <optional>

#include "drawing/energy_scale.h"
#include "plate_colours.h"

using namespace voxam;

/// The colours on a plate, and their meaning.
struct Legend {
    enum class Kind { DENSITY, MULTIPLES, VALUES, TEXT };

    Kind kind = Kind::DENSITY;
    QString caption;
    std::optional<EnergyScale> scale = {};  ///< of multiples of the average, or of values
};

/// Shows a legend, with numbers in the user's locale.
class FieldLegend : public QWidget {
    Q_OBJECT

public:
    explicit FieldLegend(QWidget* parent = nullptr);

    void show(const Legend& shown);
    void setColours(const PlateColours& colourSet);
    const Legend& legend() const { return current; }

    QSize sizeHint() const override { return {420, 46}; }
    QSize minimumSizeHint() const override { return {160, 46}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Explains the colours when the user asks "What's this?".
    QString explanation() const;
    QColor colourAt(double position) const;
    std::vector<std::pair<double, QString>> ticks() const;

    Legend current;
    const PlateColours* colours;
};
