#pragma once

#include <iostream>
#include <locale>
#include <sstream>

/// A line for the host's standard output. std::cout belongs to the host: its flags, width and
/// locale do not affect the line. If writing fails, even by an exception, the library continues.
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
