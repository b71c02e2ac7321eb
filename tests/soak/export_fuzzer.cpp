// The exporters of designs under libFuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "export_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    try {
        soak::checkExports({data, data + size});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "FAULT: %s\n", error.what());
        std::abort();
    }
    return 0;
}
