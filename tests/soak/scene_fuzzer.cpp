// The reader of scenes under libFuzzer, which finds its way by the code that an input reaches.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "scene_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    try {
        soak::checkScene({data, data + size});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "FAULT: %s\n", error.what());
        std::abort();
    }
    return 0;
}
