#include "platform/stack_room.h"

#include <limits>
#include <thread>

#include <gtest/gtest.h>

namespace orv::platform {
namespace {

#if defined(__linux__) || defined(_WIN32)
// Not inlined and no loop: the point is the frame of its own, which is needed until the call ends.
[[gnu::noinline]] std::size_t RoomBelow(int levels, volatile char* above) {
  volatile char frame[4096];
  frame[0] = static_cast<char>(levels);
  const std::size_t room = levels == 0 ? StackRoom() : RoomBelow(levels - 1, frame);
  *above = frame[0];
  return room;
}

TEST(StackRoomTest, ShrinksAsTheStackGrows) {
  const std::size_t here = StackRoom();
  ASSERT_LT(here, std::numeric_limits<std::size_t>::max());
  volatile char above = 0;
  EXPECT_LT(RoomBelow(20, &above), here - 20 * 4096);
}

TEST(StackRoomTest, EachThreadHasItsOwn) {
  std::size_t room = 0;
  std::thread([&] { room = StackRoom(); }).join();
  EXPECT_GT(room, 16U * 1024);
  EXPECT_LT(room, std::numeric_limits<std::size_t>::max());
}
#endif

}  // namespace
}  // namespace orv::platform
