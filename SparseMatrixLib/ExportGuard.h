#pragma once

#include <cfenv>
#include <exception>

/// While a guard exists, floating-point exceptions are not trapped: several computations divide by
/// zero and handle the infinities. The destructor restores the host's traps and flags.
class FloatingPointGuard {
public:
    FloatingPointGuard() { std::feholdexcept(&hosts); }
    ~FloatingPointGuard() { std::fesetenv(&hosts); }
    FloatingPointGuard(const FloatingPointGuard&) = delete;
    FloatingPointGuard& operator=(const FloatingPointGuard&) = delete;

private:
    std::fenv_t hosts;
};

/// Runs the body of an exported function. No exception may cross into the host: `onFailure` gets
/// the text of the exception and makes the function's result.
template <typename Body, typename OnFailure>
auto guardExport(const Body& body, const OnFailure& onFailure) noexcept -> decltype(body()) {
    const FloatingPointGuard guard;
    try {
        return body();
    } catch (const std::exception& failure) {
        return onFailure(failure.what());
    } catch (...) {
        return onFailure("Unknown failure");
    }
}

/// The same for a function without result: a failure leaves the state that the body reached.
template <typename Body>
void guardExport(const Body& body) noexcept {
    guardExport(body, [](const char*) {});
}
