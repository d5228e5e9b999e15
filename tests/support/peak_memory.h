// How much memory the test program has needed so far.
#pragma once

#include <cstddef>

namespace orv::test {

/// The greatest number of kilobytes that this process has held at a time.
std::size_t PeakKilobytes();

}  // namespace orv::test
