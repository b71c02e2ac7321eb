#pragma once

#include <exception>
#include <memory>
#include <string>

namespace kmat {

/// A failure of the linear-algebra layer. It is recorded, never thrown: the layer keeps the latest
/// failure in a process-wide slot. The caller of an operation that can fail reads the slot and
/// clears it. The slot is not locked.
class KmatException : public std::exception {
public:
    explicit KmatException(std::string message);

    /// The full text of the failure.
    const char* what() const noexcept override;

    /// Records a failure. An earlier one that is still pending is discarded.
    static void createKmatException(std::string message);

    /// The pending failure, or null when there is none. The layer keeps the ownership; the pointer
    /// is good until the next createKmatException or clearLastException.
    static KmatException* getLastException();

    /// Discards the pending failure, if any. Nothing else ever clears the slot.
    static void clearLastException();

private:
    std::string message;

    static std::unique_ptr<KmatException>& lastException;
};

}  // namespace kmat
