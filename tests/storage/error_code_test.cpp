#include "storage/error_code.h"

#include <gtest/gtest.h>

namespace orv::storage {
namespace {

TEST(ErrorCodeTest, StartsClear) {
  const ErrorCode errorCode;
  EXPECT_FALSE(errorCode.IsSet());
  EXPECT_EQ(errorCode.value(), 0);
}

TEST(ErrorCodeTest, KeepsTheLastCodeUntilCleared) {
  ErrorCode errorCode;
  errorCode.Set(code::kPathSyntax);
  errorCode.Set(code::kBadArgument);
  EXPECT_TRUE(errorCode.IsSet());
  EXPECT_EQ(errorCode.value(), 255);
  errorCode.Clear();
  EXPECT_FALSE(errorCode.IsSet());
}

TEST(ErrorCodeTest, RunTimeErrorsAppearUnderTheirOwnNumbers) {
  ErrorCode errorCode;
  errorCode.Set(platform::RunTimeError::kPathNotFound);
  EXPECT_EQ(errorCode.value(), 76);
}

}  // namespace
}  // namespace orv::storage
