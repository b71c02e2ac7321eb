#pragma once

#include <filesystem>
#include <fstream>

#include "run/iteration_record.h"

using namespace voxam;

/// A CSV file with a line for each iteration. Every line is flushed before the next iteration
/// begins, so that the file of an interrupted run has all iterations that it finished.
class History {
public:
    /// Replaces the file. Throws InputError if it cannot be written, like add().
    explicit History(const std::filesystem::path& target);

    void add(const IterationRecord& record);

private:
    void finishLine();

    std::filesystem::path file;
    std::ofstream stream;
};
