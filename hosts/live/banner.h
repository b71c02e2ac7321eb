#pragma once

#include <QFrame>
#include <QLabel>

/// Two lines below the plate with the current problem and its remedy, or otherwise with a hint.
/// They keep their place, so that the plate does not jump when a problem comes and goes.
class Banner : public QFrame {
    Q_OBJECT

public:
    explicit Banner(QWidget* parent = nullptr);

    /// An empty text ends the problem.
    void say(const QString& text, const QString& advice);
    /// The text to show while there is no problem.
    void setHint(const QString& text);
    /// The problem; empty without a problem.
    QString text() const { return problem; }

private:
    void refresh(const QString& markup);

    QString problem;
    QString hint;
    QLabel* sign;
    QLabel* label;
};
