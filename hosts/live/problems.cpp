#include "problems.h"

#include <QObject>
#include <QRegularExpression>
#include <array>
#include <utility>

#include "checks/checks.h"
#include "checks/plate_checks.h"
#include "room_text.h"

using namespace voxam;

namespace {

constexpr double PERCENT = 100;

template <typename Where>
QPointF middleOf(const Where& where) {
    return {0.5 * (where.x.from + where.x.to), 0.5 * (where.y.from + where.y.to)};
}

/// Where to look: at the place that is at fault, or at all supports when they do not suffice.
void mark(const Finding& finding, const Scene& scene, std::vector<QPointF>& places) {
    if (finding.place)
        places.push_back(middleOf(*finding.place));
    else if (finding.key == "supports")
        for (const Support& support : scene.supports) places.push_back(middleOf(support));
}

/// What to do about a finding that does not say it itself.
QString adviceOn(const Finding& finding) {
    const QString key = QString::fromStdString(finding.key);
    if (key == "supports") return QObject::tr("Paint supports where the plate is fastened.");
    if (key == "loadCasesInUse") return QObject::tr("Tick the load cases that are to count.");
    if (key == "passive") return QObject::tr("Change the volume, or erase kept elements.");
    if (key == "loads" && !finding.place)
        return QObject::tr("Give a load a force: pull its arrow.");
    if (key.contains('[')) return QObject::tr("Move it, or erase what is kept void there.");
    return {};
}

/// Why the library refuses, as the first sentence, and what to do about it.
QString adviceOn(const QString& text) {
    if (text == "Change load / support")
        return QObject::tr(
            "The equations cannot be solved: the plate is not held, or memory ran out. Hold it in "
            "x, in y and against turning, or use a smaller grid.");
    if (text == "Change load/support")
        return QObject::tr(
            "The loads push the plate away. Hold it in x, in y and against turning, or use smaller "
            "forces. If the design is torn, start afresh.");
    if (text == "Load cannot be on top of support")
        return QObject::tr(
            "The loads do no work. Put a force on a node that is not held, in a load case that is "
            "in use.");
    return QObject::tr("The library could not go on. Use a smaller grid, or start afresh.") + " (" +
           text + ")";
}

/// The same for a scene without errors.
QString adviceOn(const LibraryText& refusal) {
    if (isTorn(refusal))
        return QObject::tr(
            "The design has torn: its material does not join the loads to the supports. Use more "
            "volume or a finer grid, or start afresh.");
    return adviceOn(QString::fromStdString(refusal.text));
}

/// The text of a finding without the keys of a scene file.
QString inWords(QString text) {
    // The window does not show text for the scene file.
    static const QRegularExpression json(
        R"re(: ("passive": .*\]\}|add \{.*\} to passive\.solid))re");
    text.remove(json);
    static const QRegularExpression volume(R"re((volumeFraction(?: of)? )(\d[\d.e-]*\d|\d))re");
    if (const auto match = volume.match(text); match.hasMatch())
        text.replace(match.capturedStart(2), match.capturedLength(2),
                     QString::number(PERCENT * match.captured(2).toDouble()) + " %");
    static const QRegularExpression thin(
        R"re(^(\d[\d.e-]*) (is enough for a bar .*)loads\[(\d+)\])re");
    if (const auto match = thin.match(text); match.hasMatch())
        text.replace(0, match.capturedLength(),
                     QString("a volume of %1 % %2load %3")
                         .arg(QString::number(PERCENT * match.captured(1).toDouble()),
                              match.captured(2), QString::number(match.captured(3).toInt() + 1)));
    static const std::array<std::pair<const char*, const char*>, 12> words = {
        {{"lies inside the elements that passive.void keeps void", "lies inside what is kept void"},
         {"passive.void separates it", "what is kept void separates it"},
         {"passive.void:", "too many elements are kept void:"},
         {"passive.solid:", "too many elements are kept solid:"},
         {"passive.secondSolid:", "too many elements of the second kind are kept solid:"},
         {"passive elements or a blob", "elements that are kept void or solid, or a blob"},
         {"the volumeFraction", "the volume"},
         {"a volumeFraction", "a volume"},
         {"volumeFraction", "volume"},
         {"meshFactor", "the detail of the picture"},
         {"subdivision", "the detail of the design"},
         {"loadCasesInUse", "the load cases in use"}}};
    for (const auto& [key, word] : words) text.replace(key, word);
    return text;
}

QString asSentence(const QString& words) { return words.left(1).toUpper() + words.mid(1) + "."; }

/// Warnings about a scene without errors, and about its settled design.
void addWarnings(const Findings& warnings, const Scene& scene, Problems& problems) {
    for (const Finding& warning : warnings) {
        if (problems.text.isEmpty())
            problems.text = sentenceOf(warning);
        else
            problems.advice += (problems.advice.isEmpty() ? "" : " ") + sentenceOf(warning);
        if (warning.place) mark(warning, scene, problems.places);
    }
}

}  // namespace

// In the first iteration, the same text means that the whole plate is not held.
bool isTorn(const LibraryText& refusal) {
    return refusal.text == "Change load/support" && refusal.iteration > 1;
}

QString sentenceOf(const InputError& refusal) {
    return asSentence(roomText(inWords(QString::fromUtf8(refusal.what()))));
}

QString faultOf(const std::exception& error) {
    QString text = QString::fromUtf8(error.what());
    text.replace(
        "is a picture, expected a scene; to score a design, give it with --design",
        QObject::tr(
            "is a picture, expected a scene; to open a design, use File > Import a design"));
    return text;
}

QString sentenceOf(const std::vector<FloatingPart>& parts) {
    return asSentence(roomText(QString::fromStdString(describe(parts))));
}

QString sentenceOf(const Finding& finding) {
    const QString key = QString::fromStdString(finding.key);
    const QString words = roomText(inWords(QString::fromStdString(finding.text)));
    const QString text = words + ".";
    // People count from 1.
    const int number = key.section('[', 1).section(']', 0, 0).toInt() + 1;
    if (key.startsWith("loads[")) return QObject::tr("Load %1: %2").arg(number).arg(text);
    if (key.startsWith("supports[")) return QObject::tr("Support %1: %2").arg(number).arg(text);
    const QString sentence = asSentence(words);
    // A number alone does not name its setting.
    if (key == "subdivision") return QObject::tr("Detail of the design: %1").arg(sentence);
    if (key == "meshFactor") return QObject::tr("Detail of the picture: %1").arg(sentence);
    if (key == "grid") return QObject::tr("Grid: %1").arg(sentence);
    return sentence;
}

Problems problemsOf(const Scene& scene, const LibraryText& refusal,
                    const std::optional<ScoreResult>& result, bool isDrawn) {
    Problems problems;
    const Findings findings = checkSettings(scene);
    for (const Finding& finding : findings) mark(finding, scene, problems.places);
    if (!findings.empty()) {
        // What a check found says more than the library.
        problems.text = sentenceOf(findings.front());
        problems.advice = adviceOn(findings.front());
    } else if (!refusal.text.empty()) {
        const QString words = adviceOn(refusal);
        const auto reason = words.indexOf(". ") + 1;
        problems.text = words.left(reason);
        problems.advice = words.mid(reason + 1);
    } else {
        addWarnings(findIdleLoads(scene), scene, problems);
        if (!isDrawn) addWarnings(findThinVolume(scene), scene, problems);
        if (result) addWarnings(result->warnings, scene, problems);
    }
    if (refusal.resumesAt)
        problems.advice += QObject::tr(" The run resumes with the change at iteration %1.")
                               .arg(*refusal.resumesAt);
    return problems;
}
