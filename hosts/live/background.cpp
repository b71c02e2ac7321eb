#include "background.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

namespace {

constexpr qint64 UNNOTICED = 40;  // ms for which a window may freeze
constexpr int POLL = 30;          // ms
constexpr int PATIENCE = 500;     // ms before the dialog comes

}  // namespace

bool runInBackground(QWidget& parent, const QString& what,
                     std::function<void(BackgroundProgress&)> work) {
    const auto progress = std::make_shared<BackgroundProgress>();
    // The pool is waited for when the program ends.
    QThreadPool::globalInstance()->start([progress, work = std::move(work)]() mutable {
        work(*progress);
        work = nullptr;  // its data go before anybody relies on the end
        progress->isFinished = true;
    });
    QElapsedTimer clock;
    clock.start();
    while (!progress->isFinished && !clock.hasExpired(UNNOTICED)) QThread::msleep(1);
    if (progress->isFinished) return true;

    QProgressDialog dialog(what, QObject::tr("Cancel"), 0, 0, &parent);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setMinimumDuration(PATIENCE);
    QEventLoop untilFinished;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (progress->isFinished) return untilFinished.quit();
        dialog.setMaximum(progress->steps);
        dialog.setValue(progress->done);
    });
    QObject::connect(&dialog, &QProgressDialog::canceled, &untilFinished, [&] {
        progress->isCancelled = true;
        untilFinished.quit();
    });
    poll.start(POLL);
    untilFinished.exec();
    return progress->isFinished && !progress->isCancelled;
}
