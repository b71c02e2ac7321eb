#include "warnings.h"

#include "console.h"
#include "format/input_error.h"
#include "format/text.h"

using namespace voxam;

Findings warningsOf(const Findings& findings, const std::filesystem::path& scene) {
    for (const Finding& finding : findings)
        if (finding.severity == Finding::ERROR)
            throw InputError(nameOf(scene) + ": " + lineOf(finding));
    return findings;
}

void complainOf(const Findings& warnings, const std::filesystem::path& scene) {
    for (const std::string& warning : toldLines(warnings))
        complain(nameOf(scene) + ": warning: " + warning);
}

std::string explainedRefusal(const std::string& text, bool isTorn) {
    if (text.empty() || !isTorn) return text;
    return "the design has torn: its material no longer joins the loads to the supports; use a "
           "larger volumeFraction or a finer grid (the library says: " +
           text + ")";
}
