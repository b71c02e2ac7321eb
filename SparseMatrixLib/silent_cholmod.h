#pragma once

#include <SuiteSparse_config.h>

#include <utility>

namespace kmat {

/// While a guard exists, CHOLMOD does not print its warnings and errors on the host's standard
/// output. The error handler still gets them. A shared CHOLMOD has one printer per process, so
/// meanwhile the host's other threads cannot print through it either.
class SilentCholmod {
public:
    SilentCholmod() : hostsPrinter(std::exchange(SuiteSparse_config.printf_func, nullptr)) {}
    ~SilentCholmod() { SuiteSparse_config.printf_func = hostsPrinter; }
    SilentCholmod(const SilentCholmod&) = delete;
    SilentCholmod& operator=(const SilentCholmod&) = delete;

private:
    int (*hostsPrinter)(const char*, ...);
};

}  // namespace kmat
