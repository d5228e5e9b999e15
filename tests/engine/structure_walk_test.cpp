// The structural walk itself: it accepts what the engine writes and finds what is wrong.
#include "support/structure_walk.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/damage.h"
#include "support/driver.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::WalkStructures;

class StructureWalkTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.New("root");
    db_.AddFields(L"", 2, 1);
    db_.AddRecords(L"", 3, 1);
    db_.Set(L"", 1, 1, "one");
    db_.Set(L"", 2, 1, "two");
    db_.Put(L"", 3, 2, "nested");
    db_.AddFields(L"/[3,2]", 1, 1);
    ASSERT_EQ(db_.Error(), 0);
    db_.CloseAll();
  }
  ContainerBytes Bytes() const { return ContainerBytes(db_.Bytes()); }
  static std::string Problems(const ContainerBytes& file) {
    return WalkStructures(file.bytes()).Text();
  }

  test::Driver db_;
};

TEST_F(StructureWalkTest, ASoundFileHasNoProblems) {
  const test::StructureWalk walk = WalkStructures(db_.Bytes());
  EXPECT_EQ(walk.Text(), "");
  EXPECT_EQ(walk.matrices, 2U);
  EXPECT_EQ(walk.fields, 3U);
  EXPECT_EQ(walk.cells, 3U);
  EXPECT_LE(walk.liveBytes, db_.Bytes().size());
}

TEST_F(StructureWalkTest, EveryLiveByteHasAUse) {
  for (const std::string& bytes : {db_.Bytes(), test::RichFile()}) {
    const test::StructureWalk walk = WalkStructures(bytes);
    ASSERT_EQ(walk.uses.size(), bytes.size());
    const auto dead = std::ranges::count(walk.uses, test::ByteUse::kDead);
    EXPECT_EQ(bytes.size() - static_cast<std::size_t>(dead), walk.liveBytes);
  }
}

TEST_F(StructureWalkTest, UsesAreWhatTheFormatSays) {
  using test::ByteUse;
  const ContainerBytes file = Bytes();
  const test::StructureWalk walk = WalkStructures(file.bytes());
  const auto use = [&](std::int64_t position) {
    return walk.uses[static_cast<std::size_t>(position - 1)];
  };
  const std::int64_t descriptor = file.Descriptor(52, 1);
  const std::int64_t cell = file.Cell(52, 1, 1);
  EXPECT_EQ(use(1), ByteUse::kMark);
  EXPECT_EQ(use(4), ByteUse::kPointer);
  EXPECT_EQ(use(52), ByteUse::kCode);
  EXPECT_EQ(use(54), ByteUse::kPointer);
  EXPECT_EQ(use(58), ByteUse::kMark);
  EXPECT_EQ(use(file.FieldTable(52)), ByteUse::kCount);
  EXPECT_EQ(use(descriptor + 8), ByteUse::kStyle);
  EXPECT_EQ(use(descriptor + 9), ByteUse::kCellSize);
  EXPECT_EQ(use(descriptor + 11), ByteUse::kDataType);
  EXPECT_EQ(use(descriptor + 13), ByteUse::kCode);
  EXPECT_EQ(use(file.Int32(descriptor)), ByteUse::kCount);
  EXPECT_EQ(use(file.Int32(descriptor) + 4), ByteUse::kPointer);
  EXPECT_EQ(use(cell), ByteUse::kCode);
  EXPECT_EQ(use(cell + 2), ByteUse::kLength);
  EXPECT_EQ(use(cell + 3), ByteUse::kText);
  EXPECT_EQ(use(cell + 6), ByteUse::kPointer);
}

TEST_F(StructureWalkTest, AFixedFieldWithEntriesOfNoBytesEndsTheWalkOfItsData) {
  ContainerBytes file = Bytes();
  const std::int64_t descriptor = file.Descriptor(52, 1);
  file.PutByte(descriptor + 8, 5);
  file.PutInt32(file.Int32(descriptor), INT32_MAX);
  EXPECT_THAT(Problems(file), testing::HasSubstr("entries of 0 bytes"));
}

TEST_F(StructureWalkTest, TwoPointersToOneCell) {
  ContainerBytes file = Bytes();
  const std::int64_t data = file.Int32(file.Descriptor(52, 1));
  file.PutInt32(data + 8, file.Int32(data + 4));
  EXPECT_THAT(Problems(file), testing::HasSubstr("overlaps"));
}

TEST_F(StructureWalkTest, ATextThatReachesIntoItsNeighbour) {
  ContainerBytes file = Bytes();
  file.PutByte(file.Cell(52, 1, 1) + 2, 4);
  EXPECT_NE(Problems(file), "");
}

TEST_F(StructureWalkTest, PointersOutsideTheFile) {
  for (const std::int64_t wild :
       {std::int64_t{-1}, std::int64_t{1000000}, std::int64_t{INT32_MAX}}) {
    ContainerBytes file = Bytes();
    file.PutInt32(file.Int32(file.Descriptor(52, 1)) + 4, wild);
    EXPECT_THAT(Problems(file), testing::HasSubstr("outside the file")) << wild;
  }
}

TEST_F(StructureWalkTest, CountsThatDoNotAgree) {
  ContainerBytes moreFields = Bytes();
  moreFields.PutInt16(moreFields.FieldTable(52) + 4, 3);
  EXPECT_THAT(Problems(moreFields), testing::HasSubstr("fewer slots"));
  ContainerBytes fewerFields = Bytes();
  fewerFields.PutInt16(fewerFields.FieldTable(52) + 4, 1);
  EXPECT_THAT(Problems(fewerFields), testing::HasSubstr("does not agree"));
  ContainerBytes fewerRecords = Bytes();
  fewerRecords.PutInt32(fewerRecords.FieldTable(52), 2);
  EXPECT_THAT(Problems(fewerRecords), testing::HasSubstr("behind the last record"));
}

TEST_F(StructureWalkTest, LoopsEnd) {
  ContainerBytes chain = Bytes();
  const std::int64_t data = chain.Int32(chain.Descriptor(52, 1));
  chain.PutInt32(data + 4 + 3 * 4, data);
  EXPECT_THAT(Problems(chain), testing::HasSubstr("loops"));
  ContainerBytes matrix = Bytes();
  matrix.PutInt32(matrix.Int32(matrix.Descriptor(52, 1)) + 4, 52);
  EXPECT_THAT(Problems(matrix), testing::HasSubstr("overlaps"));
}

}  // namespace
}  // namespace orv
