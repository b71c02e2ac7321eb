#include "scene_exports.h"

#include <malloc.h>

#include "scene_session.h"

namespace {

SceneSession& sceneSession() {
    static SceneSession instance;
    return instance;
}

const char* textOf(const SceneSession::Reply& reply) {
    static std::string text;
    // Bytes of a scene that are not UTF-8 come back in messages.
    text = reply.dump(-1, ' ', false, SceneSession::Reply::error_handler_t::replace);
    return text.c_str();
}

}  // namespace

const char* voxamOpenScene(const char* text, const char* name) {
    return textOf(sceneSession().open(text, name));
}

const char* voxamResizeScene(int width, int height) {
    return textOf(sceneSession().resized(width, height));
}

const unsigned char* voxamElementKinds() { return sceneSession().elementKinds().data(); }

const char* voxamStartRun() { return textOf(sceneSession().startRun()); }

const char* voxamFollowScene() { return textOf(sceneSession().followScene()); }

const char* voxamIterateRun(int movesBlob) {
    return textOf(sceneSession().iterate(movesBlob != 0));
}

const float* voxamRunMaterial() {
    const Field& material = sceneSession().material();
    return material.values.empty() ? nullptr : material.values.data();
}

const char* voxamRunOutline() { return textOf(sceneSession().outline()); }

const char* voxamDrawingOutline(const unsigned char* cells, int refinement) {
    return textOf(sceneSession().outline(cells, refinement));
}

const char* voxamScoreRun(int refinement) { return textOf(sceneSession().scoreRun(refinement)); }

const char* voxamScoreDrawing(const unsigned char* cells, int refinement) {
    return textOf(sceneSession().scoreDrawing(cells, refinement));
}

const float* voxamScoredDesign() { return sceneSession().scoredDesign().values.data(); }

const float* voxamScoredEnergies() {
    const Field* energies = sceneSession().energies();
    return energies == nullptr ? nullptr : energies->values.data();
}

const double* voxamScoredDisplacements() {
    const std::vector<double>* displacements = sceneSession().displacements();
    return displacements == nullptr ? nullptr : displacements->data();
}

double voxamAllocatedBytes() { return static_cast<double>(mallinfo().uordblks); }
