#pragma once

#include <stdexcept>
#include <string>

namespace soak {

/// A property that does not hold.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline void require(bool holds, const std::string& property) {
    if (!holds) throw Fault("not so: " + property);
}

}  // namespace soak
