#include "history.h"

#include <array>
#include <charconv>
#include <string>

#include "input_error.h"

namespace {

// The shortest text that reads back as the same number.
template <typename Number>
std::string exactly(Number value) {
    std::array<char, 64> text = {};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

}  // namespace

History::History(const std::filesystem::path& target) : file(target), stream(target) {
    stream << "iteration,compliance,volume,change,totalTime,updateTime,stateTime,assembleTime,"
              "factorizeTime,solveTime,sensitivityTime,meshTime";
    finishLine();
}

void History::add(const IterationRecord& record) {
    stream << record.iteration;
    for (const double value : {record.compliance, record.volume, record.change})
        stream << ',' << exactly(value);
    const RuntimeStat& times = record.times;
    for (const float time :
         {times.totalTime, times.updateTime, times.stateTime, times.assembleTime,
          times.factorizeTime, times.solveTime, times.sensitivityTime, times.meshTime})
        stream << ',' << exactly(time);
    finishLine();
}

void History::finishLine() {
    stream << '\n' << std::flush;
    if (!stream) throw InputError(file.string() + ": cannot be written");
}
