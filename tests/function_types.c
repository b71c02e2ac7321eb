/* Compiles only if the pointer types for hosts that load the library fit its functions. */
#include <voxam_functions.h>

const InitVoxamApp INIT_APP = _InitVoxamApp;
const UpdateVoxamApp UPDATE_APP = _UpdateVoxamApp;
const IterateVoxamApp ITERATE_APP = _IterateVoxamApp;
const IterateVoxamAppWithBlob ITERATE_APP_WITH_BLOB = _IterateVoxamAppWithBlob;
const DestroyVoxamApp DESTROY_APP = _DestroyVoxamApp;
const InitVoxamGame INIT_GAME = _InitVoxamGame;
const SolveVoxamGame SOLVE_GAME = _SolveVoxamGame;
const DestroyVoxamGame DESTROY_GAME = _DestroyVoxamGame;
const InitVoxamAnalysis INIT_ANALYSIS = _InitVoxamAnalysis;
const SolveVoxamAnalysis SOLVE_ANALYSIS = _SolveVoxamAnalysis;
const DestroyVoxamAnalysis DESTROY_ANALYSIS = _DestroyVoxamAnalysis;
const VoxamPerformanceTest PERFORMANCE_TEST = _VoxamPerformanceTest;
