#pragma once

#include <QAction>
#include <QListWidget>
#include <QWidget>
#include <deque>

#include "document.h"
#include "variant.h"

/// The variants of the document in a strip, with pictures and numbers: compared, restored and
/// removed from here. They are saved with the document.
class VariantStrip : public QWidget {
    Q_OBJECT

public:
    explicit VariantStrip(QWidget* parent = nullptr);

    /// Keeps a variant. An empty name is replaced by a number.
    void add(Variant variant);
    /// Gives their score to the variants that wait for it.
    void offerScore(const ScoreResult& result);
    void clear();
    /// Shows variants that were saved.
    void open(std::deque<Variant> variants);
    /// Whether the variants were changed since they were opened or saved.
    bool isModified() const { return modified; }
    void setModified(bool isModified);
    /// Draws the pictures again, in the present colours.
    void refresh();

    const std::deque<Variant>& variants() const { return kept; }
    /// For one variant, for two, for at least one.
    QList<QAction*> actions() const { return {restore, compare, rename, remove}; }
    QListWidget& list() { return *items; }

signals:
    void restoreRequested(const Variant& variant);
    /// Whether there are any.
    void filled(bool hasVariants);
    void modificationChanged();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* list, QEvent* event) override;

private:
    void append(Variant variant);
    void addAction(QAction& action, const QString& explanation, void (VariantStrip::*slot)());
    void show(int row);
    void showSelection();
    QList<int> selectedRows() const;
    void restoreSelected();
    void compareSelected();
    void renameSelected();
    void removeSelected();

    std::deque<Variant> kept;  // in the order of the list
    int lastNumber = 0;
    bool modified = false;
    QListWidget* items;
    QAction* restore;
    QAction* compare;
    QAction* rename;
    QAction* remove;
};

/// Stores which of the drawings that are saved were made by hand. `variants` may be null.
inline void rememberDrawings(const Document& document, const VariantStrip* variants) {
    if (const auto& drawing = document.scene().densities) document.byHand.remember(*drawing);
    if (variants == nullptr) return;
    for (const Variant& variant : variants->variants())
        if (variant.isDrawn) document.byHand.remember(variant.material);
}

/// Whether the document has unsaved edits or unsaved variants. `variants` may be null.
inline bool hasUnsaved(const Document& document, const VariantStrip* variants) {
    return document.isModified() || (variants != nullptr && variants->isModified());
}
