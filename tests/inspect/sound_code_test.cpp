// Cell codes that can be true, and what becomes of the others.
#include "inspect/sound_code.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace orv::inspect {
namespace {

TEST(SoundCodeTest, TypeNumbersLeaveRoomForTheFlags) {
  for (const std::int16_t word : std::vector<std::int16_t>{1, 16379, 16381, 32759, -1, -16381}) {
    EXPECT_TRUE(HasTypeNumber(storage::DecodeCellCode(word))) << word;
  }
  for (const std::int16_t word :
       std::vector<std::int16_t>{0, 16380, 32760, 32767, -16380, -32768}) {
    EXPECT_FALSE(HasTypeNumber(storage::DecodeCellCode(word))) << word;
  }
}

TEST(SoundCodeTest, ACodeThatCanBeTrueStays) {
  EXPECT_EQ(SoundTextCode(7), 7);
  EXPECT_EQ(SoundTextCode(16387), 16387);
  EXPECT_EQ(SoundMatrixCode(-7), -7);
  EXPECT_EQ(SoundMatrixCode(-16387), -16387);
}

TEST(SoundCodeTest, ATypeNumberThatIsNoneBecomesThePlainOne) {
  EXPECT_EQ(SoundTextCode(0), 1);
  EXPECT_EQ(SoundTextCode(32767), 16381) << "the long form stays";
  EXPECT_EQ(SoundMatrixCode(0), -1);
  EXPECT_EQ(SoundMatrixCode(-32768), -16381);
}

TEST(SoundCodeTest, TheSignSaysWhetherItIsAMatrix) {
  EXPECT_EQ(SoundTextCode(-7), 7);
  EXPECT_EQ(SoundMatrixCode(7), -7);
}

}  // namespace
}  // namespace orv::inspect
