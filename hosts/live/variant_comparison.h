#pragma once

#include <QDialog>

#include "variant.h"

/// Two variants side by side, with their numbers and their differences.
class VariantComparison : public QDialog {
    Q_OBJECT

public:
    VariantComparison(const Variant& one, const Variant& other, QWidget* parent = nullptr);
};
