#pragma once

namespace kmat {

/// While one of these lives, CHOLMOD computes on the calling thread alone. OpenBLAS, where it is
/// the BLAS, runs without its threads: their number decides how it splits a product, and so the
/// last bits of a result, which must not depend on the machine's cores. As a shared library CHOLMOD
/// also runs its OpenMP loops without a team: left alone it starts a fixed one whatever the machine
/// has, which slows the factorisation of matrices of an interactive size two to three times on two
/// cores. The host's own settings are restored; that of OpenBLAS is one for the process, so
/// meanwhile it holds for the host's other threads too.
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
