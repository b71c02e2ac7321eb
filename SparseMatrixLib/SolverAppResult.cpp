// What the host gets of an iteration: the picture and the timings, or a text.

#include "MessageBuffer.h"
#include "SolverApp.h"

// The text stands until the settings change: each further iteration publishes it again.
bool SolverApp::fail(std::string_view text) {
    message = text;
    return false;
}

void SolverApp::withdrawMessage() { message.clear(); }

void SolverApp::createAndPublishResult(float* output, int messageLength, char* messageBuffer,
                                       RuntimeStat* stat) {
    writeText(message, messageLength, messageBuffer);
    if (!message.empty()) return;
    if (stat) timers.publish(*stat);
    if (output) picture.publish(output);
}
