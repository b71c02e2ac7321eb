#pragma once

#include <QString>
#include <QWidget>
#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "format/input_error.h"

/// How far work on another thread has come. The work may set `steps` and `done`; it should return
/// soon after `isCancelled`.
struct BackgroundProgress {
    std::atomic<int> steps{0};  ///< 0: not known
    std::atomic<int> done{0};
    std::atomic<bool> isCancelled{false};
    std::atomic<bool> isFinished{false};
};

/// Runs work on a thread of Qt's pool, and returns when it has finished or was cancelled. Meanwhile
/// the window stays alive. Work that takes more than half a second gets a dialog with its progress
/// and a Cancel button. Returns false after Cancel. Then the work ends by itself, so it has to own
/// everything that it uses. The work must not throw.
bool runInBackground(QWidget& parent, const QString& what,
                     std::function<void(BackgroundProgress&)> work);

/// Returns the result of `work`, and passes on its exceptions. Throws InputError after Cancel.
template <typename Work>
auto computeInBackground(QWidget& parent, const QString& what, Work work) {
    using Result = std::invoke_result_t<Work&, BackgroundProgress&>;
    struct Outcome {
        std::optional<Result> result;
        std::exception_ptr error;
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool isFinished = runInBackground(
        parent, what, [outcome, work = std::move(work)](BackgroundProgress& progress) mutable {
            try {
                outcome->result.emplace(work(progress));
            } catch (...) {
                outcome->error = std::current_exception();
            }
        });
    if (!isFinished) throw voxam::InputError(QObject::tr("%1: cancelled").arg(what).toStdString());
    if (outcome->error) std::rethrow_exception(outcome->error);
    return std::move(*outcome->result);
}
