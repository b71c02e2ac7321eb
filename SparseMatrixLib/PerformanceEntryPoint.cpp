#include "ExportGuard.h"
#include "PerformanceTest.h"
#include "voxam.h"

void _VoxamPerformanceTest() {
    guardExport([] {
        const std::vector<int> iterationCounts = {1, 2, 4, 8};
        profileNumberOfIterations(8, 12, iterationCounts);
        profileNumberOfIterations(12, 18, iterationCounts);
        profileNumberOfIterations(16, 24, iterationCounts);
        profileNumberOfIterations(20, 30, iterationCounts);
        profileNumberOfIterations(30, 45, iterationCounts);
    });
}
