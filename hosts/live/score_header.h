#pragma once

#include <QLabel>
#include <QWidget>
#include <optional>

#include "frame.h"

/// Whose design a plate shows, and what it scores.
class ScoreHeader : public QWidget {
    Q_OBJECT

public:
    explicit ScoreHeader(const QString& name, QWidget* parent = nullptr);

    /// `note` stands beside the numbers.
    void show(const ScoreResult& result, const QString& note);
    /// Without a score: why.
    void showNone(const QString& reason);

    QString text() const { return score->text(); }

private:
    void tell(const QString& text);

    QString title;
    QLabel* score;
    QLabel* details;
};
