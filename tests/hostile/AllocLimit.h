// The largest single request made through operator new since the last reset,
// recorded by this test binary's replacement of the global operator new.
#pragma once

#include <cstddef>

namespace kvtest {

void ResetLargestAllocation();
std::size_t LargestAllocation();

} // namespace kvtest
