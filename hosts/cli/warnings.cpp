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
    for (const std::string& warning : shownLines(warnings))
        complain(nameOf(scene) + ": warning: " + warning);
}

std::string explainedRefusal(const std::string& text, bool isTorn) {
    if (!isTorn || !text.starts_with("Change load")) return text;
    // The library has one text for equations that it cannot solve and for memory that ran out.
    const std::string memory = text == "Change load / support" ? ", or memory ran out" : "";
    return "the design has torn: its material no longer joins the loads to the supports" + memory +
           "; use a larger volumeFraction or a finer grid (the library says: " + text + ")";
}
