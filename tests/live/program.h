#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <fstream>
#include <string>

/// What the command-line program said.
struct ProgramOutcome {
    int status = -1;
    QString out;
    QString err;
};

/// Runs the command-line program.
inline ProgramOutcome runProgram(const QStringList& arguments) {
    constexpr int patience = 120000;  // ms; sanitizers take their time
    QProcess program;
    program.start(VOXAM_PROGRAM, arguments);
    if (!program.waitForFinished(patience)) return {};
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
