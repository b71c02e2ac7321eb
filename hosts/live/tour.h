#pragma once

#include <QFrame>
#include <QLabel>
#include <QObject>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <vector>

/// Steps that point at the parts of a window, one after the other. A step ends when the user does
/// it or presses Next.
class Tour : public QObject {
    Q_OBJECT

public:
    struct Step {
        QString title;
        QString text;
        std::function<QRect()> place;           ///< the target, in the window; may be null
        std::function<void()> prepare = [] {};  ///< brings it into sight
        bool isAside = false;                   ///< leaves the plate next to the target free
    };

    explicit Tour(QWidget& pointedAt);
    ~Tour() override;

    /// Asks whether to start. `accepted` is called if the user wants to.
    void offer(const QString& title, const QString& text, const std::function<void()>& accepted);
    void start(std::vector<Step> theSteps);
    void end();

    bool isRunning() const { return current < steps.size(); }
    std::size_t currentStep() const { return current; }

public slots:
    /// Ends the step `finished`, because the user has done its task. Ignored during other steps.
    void done(std::size_t finished);

private:
    class Marker;

    void goTo(std::size_t step);
    void show(const QString& title, const QString& text, const QString& onward);
    void follow();

    QWidget& window;
    std::vector<Step> steps;
    std::size_t current = 0;
    std::function<void()> onNext;
    QFrame* card;
    QLabel* heading;
    QLabel* words;
    QPushButton* skip;
    QPushButton* next;
    Marker* marker;
    QTimer following;
};
