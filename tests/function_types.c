/* Compiles only if the pointer types for hosts that load the library fit its functions. */
#include <voxam_functions.h>

const InitVoxamApp initApp = _InitVoxamApp;
const UpdateVoxamApp updateApp = _UpdateVoxamApp;
const IterateVoxamApp iterateApp = _IterateVoxamApp;
const IterateVoxamAppWithBlob iterateAppWithBlob = _IterateVoxamAppWithBlob;
const DestroyVoxamApp destroyApp = _DestroyVoxamApp;
const InitVoxamGame initGame = _InitVoxamGame;
const SolveVoxamGame solveGame = _SolveVoxamGame;
const DestroyVoxamGame destroyGame = _DestroyVoxamGame;
const VoxamPerformanceTest performanceTest = _VoxamPerformanceTest;
