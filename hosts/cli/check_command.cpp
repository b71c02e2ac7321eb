#include "check_command.h"

#include <algorithm>
#include <cstdio>

#include "checks/checks.h"
#include "console.h"
#include "export/scene_file.h"
#include "format/refinement.h"
#include "format/scene.h"
#include "format/text.h"
#include "report.h"
#include "verdict.h"

using namespace voxam;

namespace {

std::string useOf(const Scene& scene) {
    std::string uses;
    if (scene.volumeFraction > 0) uses = "voxam optimise";
    if (scene.densities) uses += uses.empty() ? "voxam score" : ", voxam score";
    return uses.empty() ? "none: it has neither densities nor a volumeFraction" : uses;
}

bool isError(const Finding& finding) { return finding.severity == Finding::ERROR; }

bool hasErrors(const Findings& findings) {
    return std::any_of(findings.begin(), findings.end(), isError);
}

/// About the scene and, unless it has errors, about its design.
Findings findingsOf(const Scene& scene) {
    Findings findings = checkScene(scene);
    if (!scene.densities || hasErrors(findings)) return findings;
    const Verdict verdict = judge(withLoadsInUse(scene));
    for (const Findings& more : {verdict.found.problems, verdict.warnings})
        findings.insert(findings.end(), more.begin(), more.end());
    return findings;
}

}  // namespace

int runCheck(const CommonOptions& options) {
    if (options.isQuiet || options.isJson) silenceStandardOutput();
    const Scene scene = readScene(options.scene, options.assignments);
    const Findings findings = findingsOf(scene);

    std::printf("%s\n", scene.title.c_str());
    printRow("grid", formatted("%d x %d elements", scene.width, scene.height));
    printRow("can run", useOf(scene));
    for (const Finding& finding : findings)
        printRow(isError(finding) ? "error" : "warning", lineOf(finding));
    if (findings.empty()) printRow("findings", "none");
    if (options.isJson) {
        Report report = reportOn("check", scene);
        report["findings"] = reportOn(findings);
        print(report);
    }
    if (options.isQuiet || options.isJson)
        for (const Finding& finding : findings)
            complain(nameOf(scene.files.front()) + (isError(finding) ? ": " : ": warning: ") +
                     lineOf(finding));
    if (hasErrors(findings)) return ERROR_STATUS;
    return options.isStrict && !findings.empty() ? 1 : 0;
}
