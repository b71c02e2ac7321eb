#include "assertion.h"

#include <errno.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace voxam {

namespace {

const char* fromSourceDirectory(const char* path) {
    const auto position = std::string_view(path).rfind("SparseMatrixLib/");
    return position == std::string_view::npos ? path : path + position;
}

const char* programName() {
#ifdef __GLIBC__
    return program_invocation_short_name;
#else
    return "voxam";
#endif
}

}  // namespace

void assertionFailed(const char* condition, const char* source, unsigned line,
                     const char* function) {
    std::fprintf(stderr, "%s: %s:%u: %s: Assertion `%s' failed.\n", programName(),
                 fromSourceDirectory(source), line, function, condition);
    std::fflush(stderr);
#ifdef __EMSCRIPTEN__
    // Here abort() throws, and every noexcept function on its way would call it anew.
    __builtin_trap();
#else
    std::abort();
#endif
}

}  // namespace voxam
