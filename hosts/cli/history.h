#pragma once

#include <filesystem>
#include <fstream>

#include "run/iteration_record.h"

using namespace voxam;

/// A CSV file with a line for each iteration. Every line is on its way to the disk before the next
/// iteration begins, so that an interrupted run leaves those that it finished.
class History {
public:
    /// Replaces what the file held. Throws InputError when it cannot be written, like add().
    explicit History(const std::filesystem::path& target);

    void add(const IterationRecord& record);

private:
    void finishLine();

    std::filesystem::path file;
    std::ofstream stream;
};
