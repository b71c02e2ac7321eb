#include "tour.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int CARD_WIDTH = 300;  // pixels
constexpr int GAP = 12;          // between the card and its target
constexpr int MARGIN = 8;        // to the border of the window
constexpr int UNDER_OFFER = 30;  // the status bar, below an offer
constexpr int INTERVAL = 100;    // ms between two looks at where things are

/// Next to `target`, within `room`: at its right, left, below or above it, or else in
/// its lower part. Without a target, at the lower right, away from the plate and its numbers.
QRect placeOf(const QSize& card, const QRect& target, const QRect& room) {
    QRect place(QPoint(), card);
    if (!target.isValid()) {
        place.moveBottomRight(room.bottomRight() - QPoint(0, UNDER_OFFER));
        return place;
    }
    const QPoint middle = target.center();
    const std::array<QPoint, 4> centres = {
        {{target.right() + GAP + card.width() / 2 + 1, middle.y()},
         {target.left() - GAP - card.width() / 2 - 1, middle.y()},
         {middle.x(), target.bottom() + GAP + card.height() / 2 + 1},
         {middle.x(), target.top() - GAP - card.height() / 2 - 1}}};
    const auto pushedInside = [&room](QRect rect) {
        rect.moveLeft(std::clamp(rect.left(), room.left(), room.right() - rect.width() + 1));
        rect.moveTop(std::clamp(rect.top(), room.top(), room.bottom() - rect.height() + 1));
        return rect;
    };
    for (const QPoint& centre : centres) {
        place.moveCenter(centre);
        if (room.contains(place)) return place;
    }
    for (const QPoint& centre : centres) {
        place.moveCenter(centre);
        const QRect inside = pushedInside(place);
        if (!inside.intersects(target)) return inside;
    }
    place.moveCenter({middle.x(), target.bottom() - card.height() / 2 - GAP});
    return pushedInside(place);
}

}  // namespace

/// A frame around the target of a step. It lets all events through.
class Tour::Marker : public QWidget {
public:
    explicit Marker(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        constexpr double thickness = 3;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), thickness));
        const double inset = 0.5 * thickness;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 6, 6);
    }
};

Tour::Tour(QWidget& pointedAt)
    : window(pointedAt),
      card(new QFrame(&window)),
      heading(new QLabel),
      words(new QLabel),
      skip(new QPushButton),
      next(new QPushButton),
      marker(new Marker(&window)) {
    card->setFrameShape(QFrame::StyledPanel);
    card->setAutoFillBackground(true);
    card->setBackgroundRole(QPalette::ToolTipBase);
    card->setForegroundRole(QPalette::ToolTipText);
    card->setFixedWidth(CARD_WIDTH);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    for (QLabel* label : {heading, words}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setForegroundRole(QPalette::ToolTipText);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(skip);
    buttons->addStretch();
    buttons->addWidget(next);
    auto* layout = new QVBoxLayout(card);
    layout->addWidget(heading);
    layout->addWidget(words);
    layout->addLayout(buttons);
    card->hide();
    connect(skip, &QPushButton::clicked, this, &Tour::end);
    connect(next, &QPushButton::clicked, this, [this] {
        if (const auto onward = std::exchange(onNext, nullptr)) onward();
    });
    following.setInterval(INTERVAL);
    connect(&following, &QTimer::timeout, this, &Tour::follow);
}

Tour::~Tour() = default;

void Tour::offer(const QString& title, const QString& text, const std::function<void()>& accepted) {
    end();
    onNext = [this, accepted] {
        end();
        accepted();
    };
    skip->setText(tr("Not now"));
    show(title, text, tr("Start"));
}

void Tour::start(std::vector<Step> theSteps) {
    steps = std::move(theSteps);
    skip->setText(tr("Skip the tour"));
    goTo(0);
}

void Tour::end() {
    steps.clear();
    current = 0;
    following.stop();
    card->hide();
    marker->hide();
}

void Tour::done(std::size_t finished) {
    if (isRunning() && current == finished) goTo(current + 1);
}

void Tour::goTo(std::size_t step) {
    current = step;
    if (!isRunning()) return end();
    const Step& now = steps[current];
    now.prepare();
    onNext = [this] { goTo(current + 1); };
    const bool isLast = current + 1 == steps.size();
    show(tr("%1 of %2: %3").arg(current + 1).arg(steps.size()).arg(now.title), now.text,
         isLast ? tr("Finish") : tr("Next"));
}

void Tour::show(const QString& title, const QString& text, const QString& onward) {
    heading->setText(title);
    words->setText(text);
    next->setText(onward);
    card->setAccessibleName(title);
    card->setAccessibleDescription(text);
    follow();
    card->show();
    following.start();
    QAccessibleEvent event(card, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

// The parts of the window move with its size, its panels and its mode.
void Tour::follow() {
    const QRect target = isRunning() && steps[current].place ? steps[current].place() : QRect();
    marker->setVisible(target.isValid());
    if (target.isValid() && marker->geometry() != target) marker->setGeometry(target);
    card->layout()->activate();
    const QSize size(CARD_WIDTH, card->layout()->totalHeightForWidth(CARD_WIDTH));
    const QRect room = window.rect().adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    const bool isAside = isRunning() && steps[current].isAside;
    const QRect place = placeOf(size, isAside ? QRect() : target, room);
    if (card->geometry() != place) card->setGeometry(place);
    marker->raise();
    card->raise();
}
