#include "history.h"

#include "format/exact_text.h"
#include "format/input_error.h"
#include "format/text.h"

using namespace voxam;

History::History(const std::filesystem::path& target) : file(target), stream(target) {
    stream << "iteration,compliance,volume,change,totalTime,updateTime,stateTime,assembleTime,"
              "factorizeTime,solveTime,sensitivityTime,meshTime";
    finishLine();
}

void History::add(const IterationRecord& record) {
    stream << record.iteration;
    for (const double value : {record.compliance, record.volume, record.change})
        stream << ',' << exactText(value);
    const RuntimeStat& times = record.times;
    for (const float time :
         {times.totalTime, times.updateTime, times.stateTime, times.assembleTime,
          times.factorizeTime, times.solveTime, times.sensitivityTime, times.meshTime})
        stream << ',' << exactText(time);
    finishLine();
}

void History::finishLine() {
    stream << '\n' << std::flush;
    if (!stream) throw InputError(nameOf(file) + ": cannot be written");
}
