#include "storage/chain_array.h"

#include <chrono>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/hex_text.h"
#include "support/raises.h"
#include "support/temp_file.h"

namespace orv::storage {
namespace {

using test::FromHex;
using test::HexDump;
using test::TempFile;

// Blocks of 3 and 2 entries of 4 bytes, the second before the first.
constexpr std::string_view kThreeAndTwo = R"(
  "head"                                            # position 1
  02 00 00 00  0d 00 00 00 0e 00 00 00  00 00 00 00 # position 5: entries 4 and 5, no successor
  03 00 00 00  0a 00 00 00 0b 00 00 00 0c 00 00 00  # position 21: entries 1 to 3
  05 00 00 00                                       # the next block is at 5
)";
constexpr std::int32_t kStart = 21;

TEST(ChainArrayTest, EntriesAreNumberedAcrossBlocks) {
  const TempFile file(FromHex(kThreeAndTwo));
  constexpr std::int32_t kPositions[] = {25, 29, 33, 9, 13};
  for (int k = 1; k <= 5; ++k) {
    const ChainEntry entry = ReadChainEntry(*file, kStart, k, 4, false);
    EXPECT_EQ(entry.position, kPositions[k - 1]) << "entry " << k;
    EXPECT_EQ(entry.value, 9 + k) << "entry " << k;
  }
  EXPECT_EQ(ChainLength(*file, kStart, 4), 5);
}

TEST(ChainArrayTest, EntriesInDescendingOrderAreTheSame) {
  const TempFile file(FromHex(kThreeAndTwo));
  for (int k = 5; k >= 1; --k) EXPECT_EQ(ReadChainEntry(*file, kStart, k, 4, false).value, 9 + k);
}

TEST(ChainArrayTest, AStartOfZeroGivesZeros) {
  TempFile file(FromHex(kThreeAndTwo));
  const std::string before = file.Bytes();
  for (const bool mayGrow : {false, true}) {
    const ChainEntry entry = ReadChainEntry(*file, 0, 4, 4, mayGrow);
    EXPECT_EQ(entry.position, 0);
    EXPECT_EQ(entry.value, 0);
  }
  EXPECT_EQ(ChainLength(*file, 0, 4), 0);
  EXPECT_EQ(FindChainRun(*file, 0, 1, 4).count, 0);
  EXPECT_EQ(file.Bytes(), before);
}

TEST(ChainArrayTest, AnEntryBeyondTheEndRaises9WithoutGrowth) {
  const TempFile file(FromHex(kThreeAndTwo));
  EXPECT_RAISES(9, ReadChainEntry(*file, kStart, 6, 4, false));
  EXPECT_RAISES(9, ReadChainEntry(*file, kStart, 0, 4, false));
  EXPECT_RAISES(9, ReadChainEntry(*file, kStart, -1, 4, true));
  EXPECT_RAISES(9, ReadChainEntry(*file, kStart, 1, 0, false));
  EXPECT_EQ(FindChainRun(*file, kStart, 6, 4).count, 0);
}

TEST(ChainArrayTest, GrowthAppendsOneZeroBlockAndReportsFourBytesLess) {
  TempFile file(FromHex(kThreeAndTwo));
  const auto end = static_cast<std::int32_t>(file->Length() + 1);
  const ChainEntry grown = ReadChainEntry(*file, kStart, 8, 4, true);
  EXPECT_EQ(grown.position, end + 8) << "the block has entries 6 to 8";
  EXPECT_EQ(grown.value, 0);
  EXPECT_EQ(HexDump(file->View(end, 100)), HexDump(FromHex("03 00 00 00  00*12  00 00 00 00")));
  EXPECT_EQ(file->Int32At(17), end) << "the old last block leads to the new one";
  EXPECT_EQ(ReadChainEntry(*file, kStart, 8, 4, false).position, end + 12);
  EXPECT_EQ(ReadChainEntry(*file, kStart, 6, 4, false).position, end + 4);
}

TEST(ChainArrayTest, GrowthToAnExistingEntryChangesNothing) {
  TempFile file(FromHex(kThreeAndTwo));
  const std::string before = file.Bytes();
  EXPECT_EQ(ReadChainEntry(*file, kStart, 5, 4, true).position, 13) << "exact where nothing grew";
  GrowChain(*file, kStart, 5, 4);
  GrowChain(*file, kStart, 0, 4);
  EXPECT_EQ(file.Bytes(), before);
}

TEST(ChainArrayTest, OtherWidthsHaveTheirOwnValues) {
  const TempFile file(FromHex("00  03 00 00 00  fe ff 02 00 03 00  00 00 00 00"));
  EXPECT_EQ(ReadChainEntry(*file, 2, 1, 2, false).value, -2);
  EXPECT_EQ(ReadChainEntry(*file, 2, 3, 2, false).value, 3);
  EXPECT_EQ(ReadChainEntry(*file, 2, 3, 2, false).position, 10);
  const TempFile wide(FromHex("00  02 00 00 00  \"abcdef\"  00 00 00 00"));
  EXPECT_EQ(ReadChainEntry(*wide, 2, 2, 3, false).position, 9);
  EXPECT_EQ(ReadChainEntry(*wide, 2, 2, 3, false).value, 0) << "no value for a width of 3";
}

TEST(ChainArrayTest, GrowthOfWideEntriesReportsFourBytesLess) {
  TempFile file(FromHex("00  01 00 00 00  \"abcdefg\"  00 00 00 00"));
  const auto end = static_cast<std::int32_t>(file->Length() + 1);
  EXPECT_EQ(ReadChainEntry(*file, 2, 4, 7, true).position, end + 2 * 7);
  EXPECT_EQ(file->Length(), end - 1 + 4 + 3 * 7 + 4);
}

TEST(ChainArrayTest, ARunIsTheRestOfItsBlock) {
  const TempFile file(FromHex(kThreeAndTwo));
  EXPECT_EQ(FindChainRun(*file, kStart, 2, 4).count, 2);
  EXPECT_EQ(FindChainRun(*file, kStart, 2, 4).position, 29);
  EXPECT_EQ(FindChainRun(*file, kStart, 4, 4).count, 2);
}

TEST(ChainArrayTest, MovingEntriesCrossesBlocksInBothPlaces) {
  // Every start, count and distance within three blocks of 3, 2 and 4 entries.
  for (int from = 1; from <= 9; ++from) {
    for (int count = 0; from + count <= 10; ++count) {
      for (int distance = 0; from + count + distance <= 10; ++distance) {
        TempFile file(FromHex(kThreeAndTwo));
        GrowChain(*file, kStart, 9, 4);
        std::vector<std::int32_t> expected;
        for (int k = 1; k <= 9; ++k) {
          file->WriteInt32(ReadChainEntry(*file, kStart, k, 4, false).position, 100 + k);
          expected.push_back(100 + k);
        }
        for (int k = from + count - 1; k >= from; --k) {
          expected[static_cast<std::size_t>(k - 1 + distance)] =
              expected[static_cast<std::size_t>(k - 1)];
        }
        MoveChainEntries(*file, kStart, from, count, distance, 4);
        for (int k = 1; k <= 9; ++k) {
          ASSERT_EQ(ReadChainEntry(*file, kStart, k, 4, false).value,
                    expected[static_cast<std::size_t>(k - 1)])
              << from << " " << count << " " << distance << " entry " << k;
        }
      }
    }
  }
}

TEST(ChainArrayTest, MovingBeyondTheEndRaises9) {
  const TempFile file(FromHex(kThreeAndTwo));
  EXPECT_RAISES(9, MoveChainEntries(*file, kStart, 3, 3, 1, 4));
}

TEST(ChainArrayTest, ABlockWithoutEntriesIsSteppedOver) {
  const TempFile file(
      FromHex("\"x\"  00 00 00 00  0a 00 00 00  01 00 00 00  07 00 00 00  00 00 00 00"));
  EXPECT_EQ(ReadChainEntry(*file, 2, 1, 4, false).value, 7);
  EXPECT_EQ(ChainLength(*file, 2, 4), 1);
}

/// Where entry k stands, found by walking the blocks one by one.
std::int64_t WalkedPosition(const platform::File& file, std::int64_t start, std::int64_t k, int w) {
  std::int64_t base = 0;
  for (std::int64_t block = start; block != 0;) {
    const std::int64_t n = file.Int32At(block);
    if (k <= base + n) return block + 4 + (k - base - 1) * w;
    block = file.Int32At(block + 4 + n * w);
    base += n;
  }
  return 0;
}

TEST(ChainArrayTest, TheDirectoryAgreesWithAWalkForUnevenBlocks) {
  std::mt19937 random(7);
  TempFile file(FromHex("\"x\"  01 00 00 00  00*4  00 00 00 00"));
  std::int64_t length = 1;
  while (length < 5000) {
    length += 1 + static_cast<std::int64_t>(random() % (random() % 10 == 0 ? 500 : 4));
    GrowChain(*file, 2, length, 4);
    const std::int64_t k = 1 + static_cast<std::int64_t>(random()) % length;
    ASSERT_EQ(ReadChainEntry(*file, 2, k, 4, false).position, WalkedPosition(*file, 2, k, 4));
  }
  file.Reopen();
  for (std::int64_t k = length; k >= 1; --k) {
    ASSERT_EQ(ReadChainEntry(*file, 2, k, 4, false).position, WalkedPosition(*file, 2, k, 4));
  }
}

TEST(ChainArrayTest, AHundredThousandSingleEntryBlocksAreReadInNoTime) {
  constexpr int kEntries = 100000;
  TempFile file(FromHex("\"x\"  01 00 00 00  01 00 00 00  00 00 00 00"));
  for (int k = 2; k <= kEntries; ++k) {
    GrowChain(*file, 2, k, 4);
    file->WriteInt32(ReadChainEntry(*file, 2, k, 4, false).position, k);
  }
  file.Reopen();
  std::mt19937 random(1);
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < kEntries; ++i) {
    const auto k = static_cast<std::int32_t>(1 + random() % kEntries);
    ASSERT_EQ(ReadChainEntry(*file, 2, k, 4, false).value, k);
  }
  // Walking the blocks would take some 10^10 steps.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(ChainLength(*file, 2, 4), kEntries);
}

TEST(ChainArrayTest, TwoReadersOfOneStartWithDifferentWidthsDoNotMix) {
  const TempFile file(FromHex("\"x\"  02 00 00 00  01 00 02 00  00 00 00 00 00*16"));
  EXPECT_EQ(ReadChainEntry(*file, 2, 2, 2, false).value, 2);
  EXPECT_EQ(ReadChainEntry(*file, 2, 1, 4, false).value, 0x00020001);
}

class DamagedChainTest : public testing::Test {
 protected:
  /// A first block of one entry that leads to `next`.
  static std::string LeadingTo(std::string_view next) {
    return FromHex("\"x\"  01 00 00 00  07 00 00 00 " + std::string(next) +
                   "  01 00 00 00  08 00 00 00  00 00 00 00");
  }
};

TEST_F(DamagedChainTest, ALoopRaises9) {
  for (const auto* next : {"02 00 00 00", "06 00 00 00"}) {
    const TempFile file(LeadingTo(next));
    EXPECT_EQ(ReadChainEntry(*file, 2, 1, 4, false).value, 7);
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 1000, 4, false)) << next;
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 1000, 4, true)) << next;
    EXPECT_RAISES(9, ChainLength(*file, 2, 4)) << next;
  }
}

TEST_F(DamagedChainTest, PointersOutsideTheFileRaise9AndGrowNothing) {
  for (const auto* next :
       {"ff ff ff ff", "ff ff ff 7f", "00 00 00 80", "1a 00 00 00", "19 00 00 00"}) {
    TempFile file(LeadingTo(next));
    const std::string before = file.Bytes();
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 2, 4, false)) << next;
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 2, 4, true)) << next;
    EXPECT_EQ(file.Bytes(), before) << next;
  }
}

TEST_F(DamagedChainTest, CountsThatDoNotFitTheFileRaise9) {
  for (const auto* count : {"ff ff ff ff", "00 00 00 80", "ff ff ff 7f", "05 00 00 00"}) {
    const TempFile file(FromHex("\"x\" " + std::string(count) + " 07 00 00 00  00 00 00 00"));
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 1, 4, false)) << count;
    EXPECT_RAISES(9, ReadChainEntry(*file, 2, 9, 4, true)) << count;
  }
}

TEST_F(DamagedChainTest, AWildStartRaises9) {
  const TempFile file(LeadingTo("00 00 00 00"));
  for (const std::int32_t start : {-1, INT32_MIN, INT32_MAX, 25, 26, 1000}) {
    EXPECT_RAISES(9, ReadChainEntry(*file, start, 1, 4, false)) << start;
    EXPECT_RAISES(9, ReadChainEntry(*file, start, 1, 4, true)) << start;
  }
}

TEST_F(DamagedChainTest, AGrowthBeyondTheLastPositionRaises6AndChangesNothing) {
  TempFile file(LeadingTo("00 00 00 00"));
  const std::string before = file.Bytes();
  EXPECT_RAISES(6, ReadChainEntry(*file, 2, INT32_MAX, 4, true));
  EXPECT_EQ(file.Bytes(), before);
}

}  // namespace
}  // namespace orv::storage
