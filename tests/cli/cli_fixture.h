// What the tests of the command line program share: running it among files of its own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

inline const fs::path SCENES = VOXAM_SCENES;

/// The scenes that come with the program.
inline std::vector<fs::path> shippedScenes() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(SCENES))
        if (entry.path().extension() == ".json" && entry.path().stem().extension().empty())
            files.push_back(entry.path());
    return files;
}

inline std::string contents(const fs::path& file) {
    std::ifstream stream(file);
    return (std::ostringstream() << stream.rdbuf()).str();
}

/// As one word of a command, whatever blanks it holds.
inline std::string quoted(const fs::path& file) { return "'" + file.string() + "'"; }

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// What follows the name of the program, and a part of the line that tells what is wrong with it.
struct WrongCommand {
    std::string arguments;
    std::string error;
};

class Cli : public testing::Test {
protected:
    Cli() { fs::create_directory(work); }
    ~Cli() override { fs::remove_all(directory); }

    fs::path write(const std::string& name, const std::string& text) const {
        std::ofstream(directory / name) << text;
        return directory / name;
    }

    /// Runs the program with the scene directory as its working directory.
    Outcome run(const std::string& arguments, const std::string& before = "") const {
        const fs::path out = work / "out";
        const fs::path err = work / "err";
        const std::string command = "cd " + directory.string() + " && { " + before + " " +
                                    quoted(VOXAM_PROGRAM) + " " + arguments + "; } >" +
                                    out.string() + " 2>" + err.string();
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(out), contents(err)};
    }

    /// Names of everything that lies beside the scenes.
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory))
            if (entry.path() != work) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    void expectError(const Outcome& outcome, const std::string& text) const {
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err.rfind("voxam: ", 0), 0u) << outcome.err;
        EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    }

    /// The program stops at each of these before it writes anything.
    void expectErrors(const std::vector<WrongCommand>& commands) const {
        const auto before = files();
        for (const auto& [arguments, error] : commands) {
            SCOPED_TRACE(arguments);
            expectError(run(arguments), error);
            EXPECT_EQ(files(), before);
        }
    }

    static fs::path newDirectory() {
        std::string name = (fs::temp_directory_path() / "voxam-cli-XXXXXX").string();
        return mkdtemp(name.data());
    }

    fs::path directory = newDirectory();
    fs::path work = directory / "work";
};
