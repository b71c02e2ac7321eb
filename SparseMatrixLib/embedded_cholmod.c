/*
 * What CHOLMOD refers to when its archives are linked into the library, under the names that
 * cmake/EmbeddedCholmod.cmake gives to it.
 *
 * CHOLMOD splits small loops of each supernode among a team of OpenMP. On plates of an interactive
 * size they take microseconds, less than it takes to enter a parallel region, even for a team of
 * one. So a region is a plain call here, and no OpenMP runtime is needed.
 */
#include <stdio.h>

#pragma GCC visibility push(hidden)

/* Set before anything else of the library runs. CHOLMOD flushes them when it reports a problem. */
FILE* voxam_cholmod_stdout;
FILE* voxam_cholmod_stderr;

__attribute__((constructor(101))) static void setStreams(void) {
    voxam_cholmod_stdout = stdout;
    voxam_cholmod_stderr = stderr;
}

/* What GCC makes of a parallel region. `region` splits the loop by the two functions below. */
void voxam_cholmod_parallel(void (*region)(void*), void* data, unsigned threads, unsigned flags) {
    (void)threads;
    (void)flags;
    region(data);
}

int voxam_cholmod_num_threads(void) { return 1; }

int voxam_cholmod_thread_num(void) { return 0; }

/*
 * CHOLMOD reads the clock before and after each call of the BLAS, to no other end than statistics
 * that nobody asks for. On small plates that takes one twentieth of an iteration.
 */
double SuiteSparse_time(void) { return 0; }
