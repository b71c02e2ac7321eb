// Precondition checks that stay active in every build, release included: a host that violates one
// is stopped with a report instead of going on with a corrupted design.
#pragma once

namespace voxam {

/// Writes the platform's assertion report to standard error and aborts the process.
/// `source` is a path with or without leading directories; the report names it from
/// "SparseMatrixLib/" on, so that it reads the same wherever the library was built.
[[noreturn]] void assertionFailed(const char* condition, const char* source, unsigned line,
                                  const char* function);

}  // namespace voxam

/// Like VOXAM_ASSERT, for a report that has to name another place than its own.
#define VOXAM_ASSERT_AT(source, line, condition) \
    ((condition) ? static_cast<void>(0)          \
                 : ::voxam::assertionFailed(#condition, source, line, __func__))

/// Stops the process unless `condition` holds. The report quotes the condition as written here.
#define VOXAM_ASSERT(condition)         \
    ((condition) ? static_cast<void>(0) \
                 : ::voxam::assertionFailed(#condition, __FILE__, __LINE__, __func__))
