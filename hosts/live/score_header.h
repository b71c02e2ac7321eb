#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QWidget>

/// Whose design a plate shows, and what it scores.
class ScoreHeader : public QWidget {
    Q_OBJECT

public:
    explicit ScoreHeader(const QString& name, QWidget* parent = nullptr);

    /// A few large words, and a line below them.
    void show(const QString& headline, const QString& details);
    /// How much of the budget is used; both are shares of the plate.
    void showMaterial(double used, double budget, bool isOver);

    /// A short remark next to the name; empty for none.
    void setRemark(const QString& remark);

    QString text() const { return wholeHeadline; }
    QString details() const { return allDetails; }
    QString remark() const { return heading->text().mid(title.size()); }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Shows as much of the headline as fits in a line, and as many words of the details as fit in
    /// two. The tooltips show all of them.
    void fitTexts();

    QString title;
    QString wholeHeadline;
    QString allDetails;
    QLabel* heading;
    QLabel* headlineLabel;
    QLabel* detailLabel;
    QProgressBar* material;
    QLabel* materialLabel;
};
