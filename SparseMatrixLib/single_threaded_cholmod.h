#pragma once

namespace kmat {

/// While a guard exists, CHOLMOD computes only on the calling thread, and so does OpenBLAS if it is
/// the BLAS. The number of OpenBLAS's threads decides how it splits a product, and thereby the last
/// bits of a result; these must not depend on the machine's cores. A shared CHOLMOD also runs its
/// OpenMP loops without a team: by default it starts a team of fixed size, which makes
/// factorisations of interactive size two to three times slower on two cores. The destructor
/// restores the host's settings. OpenBLAS has one setting per process, so meanwhile the host's
/// other threads are limited too.
class SingleThreadedCholmod {
public:
    SingleThreadedCholmod();
    // Not trivial where CHOLMOD or the BLAS is a shared library.
    // NOLINTNEXTLINE(performance-trivially-destructible)
    ~SingleThreadedCholmod();
    SingleThreadedCholmod(const SingleThreadedCholmod&) = delete;
    SingleThreadedCholmod& operator=(const SingleThreadedCholmod&) = delete;

    /// How many threads OpenBLAS has for the host; 0 if it is not the BLAS or linked in.
    int getHostsBlasThreads() const { return hostsBlasThreads; }

private:
    // Not used when CHOLMOD and the BLAS are linked in, without threads.
    [[maybe_unused]] int hostsActiveLevels = 0;  ///< of OpenMP's nested regions
    [[maybe_unused]] int hostsOmpThreads = 0;
    [[maybe_unused]] int hostsBlasThreads = 0;
};

}  // namespace kmat
