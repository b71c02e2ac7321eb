#pragma once

#include <QLabel>
#include <QWidget>
#include <optional>

#include "frame.h"
#include "run_state.h"

/// The line below the plate: the state of the optimiser and the score of its design.
class ResultLine : public QWidget {
    Q_OBJECT

public:
    explicit ResultLine(QWidget* parent = nullptr);

    /// The numbers are those of iteration 0 if the present problem has not been computed yet.
    /// `seconds` is how long the present iteration has taken.
    void showState(RunState state, const IterationNumbers& numbers, int seconds);
    /// Whether the compliances are those of one half of a symmetric plate.
    void setHalf(bool isHalf);
    /// The score of the settled design; empty while it forms.
    void showScore(std::optional<ScoreResult> result);

    QString text() const { return word->text() + ": " + line->text(); }

private:
    void refresh();
    QString worth() const;
    /// What Play does with a design at rest.
    QString outlook() const;
    QString progress() const;
    QString details() const;

    QLabel* word;
    QLabel* line;
    RunState shown = RunState::FORMING;
    IterationNumbers last;
    int waited = 0;
    bool half = false;
    std::optional<ScoreResult> score;
};
