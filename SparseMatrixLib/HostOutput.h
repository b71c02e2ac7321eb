#pragma once

#include <iostream>
#include <locale>
#include <sstream>

/// A line for the host's standard output. std::cout is the host's: its flags, width and locale have
/// no effect on the line, and if it cannot be written, also by an exception, the library goes on.
class HostLine {
public:
    HostLine() { line.imbue(std::locale::classic()); }
    ~HostLine() {
        try {
            line << '\n';
            const std::string text = line.str();
            std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
        } catch (...) {
        }
    }
    HostLine(const HostLine&) = delete;
    HostLine& operator=(const HostLine&) = delete;

    template <typename Value>
    HostLine& operator<<(const Value& value) {
        line << value;
        return *this;
    }

private:
    std::ostringstream line;
};
