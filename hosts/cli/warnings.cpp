#include "warnings.h"

#include "console.h"
#include "format/input_error.h"
#include "format/text.h"

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
