#include "export/file_ending.h"

#include <algorithm>

#include "format/input_error.h"
#include "format/text.h"

namespace voxam::inline files {

std::string fileEnding(const std::filesystem::path& file) {
    std::string ending = file.extension().string();
    for (char& letter : ending)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return ending;
}

void checkEnding(const std::string& option, const std::filesystem::path& file,
                 const std::vector<std::string>& endings) {
    const std::string ending = fileEnding(file);
    if (std::find(endings.begin(), endings.end(), ending) != endings.end()) return;
    std::string list;
    for (const std::string& known : endings) list += (list.empty() ? "" : ", ") + known;
    throw InputError(option + ": " + nameOf(file) + ": " +
                     (ending.empty() ? "has no ending" : "unknown ending " + ending) +
                     ", expected " + (endings.size() > 1 ? "one of " : "") + list);
}

}  // namespace voxam::inline files
