// Expecting a run-time failure by its number.
#pragma once

#include <gtest/gtest.h>

#include "platform/run_time_error.h"

namespace orv::test {

/// The number of the run-time failure that the call raises, or 0 when it raises none.
template <typename Call>
int RaisedBy(Call call) {
  try {
    call();
  } catch (const platform::RunTimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

}  // namespace orv::test

/// Expects that the statement raises the run-time error `expected`.
#define EXPECT_RAISES(expected, statement) \
  EXPECT_EQ(orv::test::RaisedBy([&] { statement; }), static_cast<int>(expected))
