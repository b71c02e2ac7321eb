#include <voxam.h> /* for RuntimeStat */

typedef void (*InitVoxamApp)(int textureWidth, int textureHeight, int subdivision, int meshFactor,
                             float volumeFraction, int numLoadCases, int restartId);
typedef void (*UpdateVoxamApp)(int loadCount, const float* loadData, int supportCount,
                               const float* supportData, float volumeFraction,
                               const short* passiveData, int loadCaseCount,
                               const char* loadCaseIndices, const short* blobData);
typedef double (*IterateVoxamApp)(int messageLength, char* messageBuffer, float* output,
                                  double* change, RuntimeStat* stat, float penalty);
typedef double (*IterateVoxamAppWithBlob)(int messageLength, char* messageBuffer, float* output,
                                          double* change, RuntimeStat* stat, int* blobResult,
                                          float penalty);
typedef void (*DestroyVoxamApp)(void);

typedef void (*InitVoxamGame)(int nelx, int nely, int ndopt, int ndvis, int loadCount,
                              const float* loadData, int supportCount, const float* supportData,
                              int numberOfLoadCases);
typedef double (*SolveVoxamGame)(const float* densities, float* elementValues);
typedef void (*DestroyVoxamGame)(void);

typedef void (*InitVoxamAnalysis)(int nelx, int nely, int loadCount, const float* loadData,
                                  int supportCount, const float* supportData,
                                  int numberOfLoadCases);
typedef int (*SolveVoxamAnalysis)(const double* moduli, int messageLength, char* messageBuffer,
                                  double* compliances, double* displacements, double* energies,
                                  double* stresses, unsigned char* looseElements);
typedef void (*DestroyVoxamAnalysis)(void);

typedef void (*VoxamPerformanceTest)(void);
