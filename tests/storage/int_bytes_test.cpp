#include "storage/int_bytes.h"

#include <gtest/gtest.h>

#include "support/hex_text.h"

namespace orv::storage {
namespace {

TEST(IntToBytesTest, TheLowestByteComesFirst) {
  platform::NumberedFiles files;
  EXPECT_EQ(IntToBytes(0x01020304, files), test::FromHex("04 03 02 01"));
  EXPECT_EQ(IntToBytes(0, files), test::FromHex("00*4"));
  EXPECT_EQ(IntToBytes(-2, files), test::FromHex("fe ff ff ff"));
  EXPECT_EQ(IntToBytes(INT32_MIN, files), test::FromHex("00 00 00 80"));
  EXPECT_EQ(files.Find(platform::NumberedFiles::kCreation), nullptr);
}

}  // namespace
}  // namespace orv::storage
