#pragma once

#include <QDialog>

#include "variant.h"

/// Two variants side by side, with their numbers and what they differ in.
class VariantComparison : public QDialog {
    Q_OBJECT

public:
    VariantComparison(const Variant& one, const Variant& other, QWidget* parent = nullptr);
};
