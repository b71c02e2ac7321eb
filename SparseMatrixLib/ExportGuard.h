#pragma once

#include <exception>
#include <utility>

/// Runs the body of an exported function. No exception may cross into the host: `onFailure` gets
/// the text of the exception and makes the function's result.
template <typename Body, typename OnFailure>
auto guardExport(Body&& body, OnFailure&& onFailure) noexcept -> decltype(body()) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception& failure) {
        return std::forward<OnFailure>(onFailure)(failure.what());
    } catch (...) {
        return std::forward<OnFailure>(onFailure)("Unknown failure");
    }
}

/// The same for a function without result: a failure leaves the state that the body reached.
template <typename Body>
void guardExport(Body&& body) noexcept {
    guardExport(std::forward<Body>(body), [](const char*) {});
}
