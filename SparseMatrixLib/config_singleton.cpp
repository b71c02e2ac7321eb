#include "config_singleton.h"

#include <memory>

namespace kmat {

namespace {

struct Context {
    std::unique_ptr<cholmod_common> common;
    std::string lastError;
};

// Deliberately never destroyed: a matrix with static lifetime, or one that a host releases in an
// exit handler, may need the workspace after this file's own objects would have gone.
Context& context() {
    static Context& instance = *new Context;
    return instance;
}

}  // namespace

cholmod_common* ConfigSingleton::getCommonPtr() {
    auto& common = context().common;
    if (!common) {
        common = std::make_unique<cholmod_common>();
        cholmod_start(common.get());
        common->error_handler = errorHandler;
    }
    return common.get();
}

void ConfigSingleton::config(cholmod_common* newCommon) {
    auto& common = context().common;
    if (newCommon == common.get()) {
        if (newCommon) cholmod_finish(newCommon);
    } else {
        destroy();
        common.reset(newCommon);
    }
    if (newCommon) cholmod_start(newCommon);
}

void ConfigSingleton::destroy() {
    auto& common = context().common;
    if (!common) return;
    cholmod_finish(common.get());
    common.reset();
}

std::string ConfigSingleton::getLastError() { return context().lastError; }

void errorHandler(int /*status*/, const char* /*file*/, int /*line*/, const char* message) {
    context().lastError = message ? message : "";
}

}  // namespace kmat
