#pragma once

#include <cholmod.h>

#include <string>

namespace kmat {

/// Holder of the one CHOLMOD workspace that every matrix, factor and solve of the layer shares.
/// Unlocked: the first use happens on one thread, and CHOLMOD is called from one thread at a time.
class ConfigSingleton {
public:
    ConfigSingleton() = delete;

    /// The workspace, created and started with CHOLMOD's defaults on first use (and on the first
    /// use after destroy()), with errorHandler installed. Never null.
    static cholmod_common* getCommonPtr();

    /// Makes `newCommon` the layer's workspace and starts it. Takes the ownership: `newCommon` must
    /// come from plain `new`. Handing in the workspace already held restarts it. The error handler
    /// is deliberately left to the caller, who brings a workspace of his own to set it up himself.
    static void config(cholmod_common* newCommon);

    /// Finishes and releases the workspace, if any.
    static void destroy();

    /// The text of the latest message that CHOLMOD reported, empty before the first. It is never
    /// cleared, only overwritten.
    static std::string getLastError();
};

/// The handler that CHOLMOD calls for each warning (status > 0) and error (status < 0). It keeps
/// `message` for getLastError() and does nothing else: whether a message is a failure is for the
/// caller of the CHOLMOD routine to decide.
void errorHandler(int status, const char* file, int line, const char* message);

}  // namespace kmat
