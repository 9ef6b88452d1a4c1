// The largest single request made through operator new since the last reset,
// and the peak of the bytes live at once above what was live at the reset,
// recorded by this test binary's replacement of the global operator new.
#pragma once

#include <cstddef>

namespace kvtest {

void ResetAllocationCounts();
std::size_t LargestAllocation();
// Peak of live heap bytes (as the allocator rounds them) since the last reset,
// less those live at the reset.
std::size_t PeakLiveGrowth();

} // namespace kvtest
