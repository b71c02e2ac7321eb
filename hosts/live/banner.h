#pragma once

#include <QFrame>
#include <QLabel>

/// A line above the plate that says what is wrong and what to do. Hidden when all is well.
class Banner : public QFrame {
    Q_OBJECT

public:
    explicit Banner(QWidget* parent = nullptr);

    /// An empty text hides it.
    void say(const QString& text, const QString& advice);
    QString text() const;

private:
    QLabel* sign;
    QLabel* label;
};
