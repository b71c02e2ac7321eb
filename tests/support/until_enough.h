// How the tests of scarce memory go about it.
#pragma once

#include <gtest/gtest.h>

namespace test {

/// Calls `attempt` with room for 0, 1, 2, ... allocations, until it says that there was enough.
template <typename Attempt>
void untilEnough(const Attempt& attempt) {
    constexpr long most = 2000;
    long count = 0;
    while (!attempt(count)) ASSERT_LT(++count, most);
    EXPECT_GT(count, 0);
}

}  // namespace test
