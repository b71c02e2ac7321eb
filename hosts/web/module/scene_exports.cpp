#include "scene_exports.h"

#include "scene_session.h"

namespace {

SceneSession& session() {
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
    return textOf(session().open(text, name));
}

const unsigned char* voxamElementKinds() { return session().elementKinds().data(); }

const char* voxamStartRun() { return textOf(session().startRun()); }

const char* voxamFollowScene() { return textOf(session().followScene()); }

const char* voxamIterateRun(int movesBlob) { return textOf(session().iterate(movesBlob != 0)); }

const unsigned char* voxamRunPicture() {
    return session().picture().empty() ? nullptr : session().picture().data();
}

const char* voxamRunOutline() { return textOf(session().outline()); }

const char* voxamScoreRun(int refinement) { return textOf(session().scoreRun(refinement)); }

const char* voxamScoreDrawing(const unsigned char* cells, int refinement) {
    return textOf(session().scoreDrawing(cells, refinement));
}

const float* voxamScoredDesign() { return session().scoredDesign().values.data(); }

const float* voxamScoredEnergies() {
    return session().energies().values.empty() ? nullptr : session().energies().values.data();
}

const double* voxamScoredDisplacements() {
    return session().displacements().empty() ? nullptr : session().displacements().data();
}
