// The two tiers of the suite: the fast one runs at every build, the long one on request.
#pragma once

#include <cstdlib>

namespace orv::test {

/// True when the long tier was asked for (`./dev test --long`): tests that scale raise their
/// counts, tests that exist for the long tier only stop being skipped.
inline bool LongTier() { return std::getenv("ORV_LONG_TESTS") != nullptr; }

}  // namespace orv::test
