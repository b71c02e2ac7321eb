#include "report.h"

#include "console.h"
#include "format/text.h"

using namespace voxam;

Report reportOn(const char* command, const Scene& scene) {
    Report report = {{"command", command},
                     {"scene", nameOf(scene.files.front())},
                     {"title", scene.title},
                     {"grid", {{"width", scene.width}, {"height", scene.height}}}};
    if (hasPlainLoadCases(scene)) return report;
    for (const auto& [name, weight] : scene.loadCases)
        report["loadCases"].push_back({{"name", name}, {"weight", weight}});
    return report;
}

Report reportOn(const Findings& findings) {
    Report list = Report::array();
    for (const Finding& finding : findings)
        list.push_back({{"severity", finding.severity == Finding::ERROR ? "error" : "warning"},
                        {"key", finding.key},
                        {"text", finding.text}});
    return list;
}

Report reportOn(const std::vector<WrittenFile>& files) {
    Report list = Report::array();
    for (const WrittenFile& file : files)
        list.push_back({{"kind", file.kind}, {"name", onOneLine(file.name.string())}});
    return list;
}

Report reportOn(const Assessment& found) {
    Report object;
    object["compliance"] =
        found.problems.empty() ? Report(found.score.compliance) : Report(nullptr);
    for (const PlateState& state : found.states) object["compliances"].push_back(state.compliance);
    if (!found.problems.empty()) object["problems"] = reportOn(found.problems);
    return object;
}

Report reportOn(const Verdict& verdict) {
    Report object = reportOn(verdict.found);
    object["asDrawn"] = {
        {"compliance", reportOn(verdict.asDrawn())["compliance"]},
        {"level", verdict.drawn ? verdict.drawn->drawn.level : DrawnDesign().level}};
    if (!verdict.asDrawn().problems.empty())
        object["asDrawn"]["problems"] = reportOn(verdict.asDrawn().problems);
    return object;
}

void print(const Report& report) { printDespiteSilence(report.dump(4) + "\n"); }
