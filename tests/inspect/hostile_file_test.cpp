// Files made to exhaust whoever reads them: depth, loops and structures reached without end.
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspect/dump.h"
#include "inspect/rescue.h"
#include "inspecting.h"
#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/peak_memory.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ContainerBytes;

std::string Int32(std::int64_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

/// A file with one field and as many records as pointers follow.
ContainerBytes OneField(const std::vector<std::int64_t>& pointers) {
  test::Driver db;
  db.New("root");
  db.AddFields(L"", 1, 1);
  db.CloseAll();
  ContainerBytes file(db.Bytes());
  std::string block = Int32(std::ssize(pointers));
  for (const std::int64_t pointer : pointers) block += Int32(pointer);
  const std::int64_t descriptor = file.Descriptor(file.Root(), 1);
  const std::int64_t data = file.Append(block + Int32(0));
  file.PutInt32(descriptor, data);
  file.PutInt32(file.FieldTable(file.Root()), std::ssize(pointers));
  return file;
}

class HostileFileTest : public testing::Test {
 protected:
  /// Inspects, dumps and rescues within the time.
  inspect::Inspection Bear(const std::string& bytes) {
    constexpr auto kTime = std::chrono::seconds(120);
    constexpr std::size_t kMemoryKilobytes = std::size_t{1} << 20;
    const std::size_t before = test::PeakKilobytes();
    const auto begin = std::chrono::steady_clock::now();
    const inspect::Inspection inspection = test::InspectBytes(bytes);
    const test::TempFile source(bytes);
    std::int64_t items = 0;
    inspect::DumpFile(*source, {}, [&](const inspect::DumpItem&) { ++items; });
    EXPECT_GT(items, 0);
    {
      const test::TempFile target;
      rescued_ = inspect::Rescue(*source, *target);
      copy_ = target.Bytes();
    }
    EXPECT_TRUE(test::InspectBytes(copy_).IsClean());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kTime);
    EXPECT_LT(test::PeakKilobytes() - before, kMemoryKilobytes);
    return inspection;
  }

  inspect::Rescued rescued_;
  std::string copy_;
};

/// A chain of matrices, each in the only cell of the one before.
std::string Nested(int depth) {
  ContainerBytes file = OneField({0});
  const std::string first = file.bytes();
  const std::int64_t root = file.Root();
  std::string bytes = first;
  std::int64_t slot = file.Int32(file.Descriptor(root, 1)) + 4;
  // Matrix header 16, title 8, field table 6 + 12, descriptor 22, data 12.
  for (int i = 0; i < depth; ++i) {
    const auto at = static_cast<std::int64_t>(bytes.size()) + 1;
    bytes.replace(static_cast<std::size_t>(slot - 1), 4, Int32(at));
    bytes += std::string("\xff\xff", 2) + Int32(at + 16) + std::string("\x01\0", 2) + Int32(0) +
             Int32(at + 24);
    bytes += Int32(0) + Int32(0);
    bytes += Int32(1) + std::string("\x01\0", 2) + Int32(1) + Int32(at + 42) + Int32(0);
    bytes += Int32(at + 64) + Int32(0) + std::string("\x01\0\0\0\0\x01\0\x01\0", 9) +
             std::string(5, '\0');
    bytes += Int32(1) + Int32(0) + Int32(0);
    slot = at + 68;
  }
  return bytes;
}

TEST_F(HostileFileTest, TensOfThousandsOfLevelsAreWalkedAndSoundAllTheWay) {
  const int levels = test::LongTier() ? 100000 : 20000;
  const inspect::Inspection inspection = Bear(Nested(levels));
  EXPECT_EQ(test::FindingText(inspection), "");
  EXPECT_EQ(inspection.matrices, levels + 1);
  EXPECT_EQ(inspection.DeadBytes(), 0);
  EXPECT_TRUE(rescued_.lost) << "a copy is a thousand levels deep at most";
}

TEST_F(HostileFileTest, AHundredThousandPointersToOneLongText) {
  ContainerBytes file = OneField({});
  const std::int64_t cell =
      file.Append(std::string("\xfd\x3f", 2) + Int32(100000) + std::string(100000, 'x') + Int32(0));
  ContainerBytes many = OneField(std::vector<std::int64_t>(100000, 0));
  const std::int64_t end =
      many.Append(std::string(file.bytes().substr(static_cast<std::size_t>(cell - 1))));
  for (int r = 1; r <= 100000; ++r) {
    many.PutInt32(many.Int32(many.Descriptor(many.Root(), 1)) + 4 * r, end);
  }
  const inspect::Inspection inspection = Bear(many.bytes());
  EXPECT_EQ(inspection.findings.listed().size(), inspect::FindingList::kGreatestListed);
  EXPECT_EQ(inspection.findings.unlisted(), 99999 - 10000);
  EXPECT_TRUE(rescued_.lost);
  EXPECT_LT(copy_.size(), many.bytes().size() * 16 + (std::size_t{17} << 20));
}

TEST_F(HostileFileTest, ACopyThatIsEndedBeforeItsDictionaryIsSound) {
  constexpr int kRecords = 1000;
  constexpr int kTexts = test::styled::kFields + 1;  // behind the dictionary field
  test::Driver db;
  MakeStyledFile(db);
  db.AddFields(L"", 1, kTexts);
  db.AddRecords(L"", kRecords, 1);
  db.Set(L"", 1, kTexts, std::string(100000, 'x'));
  db.Set(L"", 1, test::styled::kDictionary, "value");
  ASSERT_EQ(db.Error(), 0);
  db.CloseAll();
  ContainerBytes file(db.Bytes());
  const std::int64_t data = file.Int32(file.Descriptor(file.Root(), kTexts));
  for (int r = 2; r <= kRecords; ++r) file.PutInt32(data + 4 * r, file.Int32(data + 4));
  EXPECT_EQ(Bear(file.bytes()).findings.listed().size(), std::size_t{kRecords - 1});
  EXPECT_TRUE(rescued_.lost);
  EXPECT_THAT(rescued_.remarks,
              testing::Contains(testing::Field(&inspect::RescueRemark::what,
                                               testing::HasSubstr("its dictionary is not"))));
}

TEST_F(HostileFileTest, AMatrixThatHoldsItselfInEveryCell) {
  const ContainerBytes file = OneField(std::vector<std::int64_t>(10000, 52));
  const inspect::Inspection inspection = Bear(file.bytes());
  EXPECT_EQ(inspection.matrices, 1);
  EXPECT_EQ(inspection.findings.listed().size(), 10000U);
  EXPECT_EQ(rescued_.matrices, 1);
}

TEST_F(HostileFileTest, MatricesThatDoubleAtEachLevelAreCopiedUpToALimit) {
  // Each matrix is in both cells of the one before: the last one has 2 to the power of 30 paths.
  test::Driver db;
  db.New("root");
  std::wstring steps;
  for (int i = 0; i < 30; ++i) {
    db.AddFields(steps, 1, 1);
    db.AddRecords(steps, 2, 1);
    db.Put(steps, 1, 1, "level");
    steps += L"/[1,1]";
  }
  ASSERT_EQ(db.Error(), 0);
  db.CloseAll();
  ContainerBytes file(db.Bytes());
  for (std::int64_t matrix = file.Root(); file.FieldTable(matrix) != 0;
       matrix = file.Cell(matrix, 1, 1)) {
    const std::int64_t data = file.Int32(file.Descriptor(matrix, 1));
    file.PutInt32(data + 8, file.Int32(data + 4));
  }
  const inspect::Inspection inspection = Bear(file.bytes());
  EXPECT_EQ(inspection.findings.listed().size(), 30U);
  EXPECT_TRUE(rescued_.lost);
}

TEST_F(HostileFileTest, BlocksWithoutEntriesWithoutEnd) {
  const int count = test::LongTier() ? 1000000 : 100000;
  ContainerBytes file = OneField({0});
  std::string blocks;
  const std::int64_t first = file.size() + 1;
  for (int i = 1; i <= count; ++i) blocks += Int32(0) + Int32(i == count ? 0 : first + 8 * i);
  file.Append(blocks);
  file.PutInt32(file.Int32(file.Descriptor(file.Root(), 1)) + 8, first);
  const inspect::Inspection inspection = Bear(file.bytes());
  EXPECT_EQ(test::FindingText(inspection), "");
  EXPECT_EQ(inspection.DeadBytes(), 0);
}

}  // namespace
}  // namespace orv
