#pragma once

#include <cstdint>
#include <initializer_list>

/// The product of sizes. Throws std::bad_alloc when it exceeds the range of int, the index type of
/// the linear algebra: no machine could hold such a problem.
unsigned checkedProduct(std::initializer_list<uint64_t> sizes);
