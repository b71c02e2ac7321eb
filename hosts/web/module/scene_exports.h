/*
 * What the module exports beside the library: a scene, its run and scores, for the package in
 * hosts/web/package. There is one scene at a time.
 *
 * Texts are UTF-8. Replies are JSON, see SceneSession. A reply, and an array, is valid until the
 * next call of any of these functions.
 */
#ifndef VOXAM_SCENE_EXPORTS_H
#define VOXAM_SCENE_EXPORTS_H

#ifdef __cplusplus
extern "C" {
#endif

const char* voxamOpenScene(const char* text, const char* name);
const char* voxamResizeScene(int width, int height);
const unsigned char* voxamElementKinds(void);

const char* voxamStartRun(void);
const char* voxamFollowScene(void);
const char* voxamIterateRun(int movesBlob);
/** Floats of the design, 0 void to 1 solid, row by row. Null before the first iteration. */
const float* voxamRunMaterial(void);
const char* voxamRunOutline(void);
const char* voxamDrawingOutline(const unsigned char* cells, int refinement);

const char* voxamScoreRun(int refinement);
const char* voxamScoreDrawing(const unsigned char* cells, int refinement);
/** Floats of the design that was scored last, row by row. */
const float* voxamScoredDesign(void);
/** Null when it is not supported. */
const float* voxamScoredEnergies(void);
/** Doubles by degree of freedom; null when it is not supported. */
const double* voxamScoredDisplacements(void);

/** Bytes that are allocated now. The module's memory is larger, because it never shrinks. */
double voxamAllocatedBytes(void);

#ifdef __cplusplus
}
#endif

#endif
