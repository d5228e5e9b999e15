#include "command/subscript.h"

#include <gtest/gtest.h>

#include "language_fixture.h"

namespace orv::command::test {
namespace {

class SubscriptTest : public LanguageTest {
 protected:
  double Read(const std::wstring& expression) {
    return ReadSubscript(expression, path_, evaluator_);
  }
};

TEST_F(SubscriptTest, IsEvaluatedInTheContextOfThePathReadSoFar) {
  EXPECT_EQ(Read(L"3"), 3);
  EXPECT_EQ(Read(L"records"), 4);
  EXPECT_EQ(Read(L"field(3,\"a,b\")+1"), 4);
  EXPECT_EQ(Read(L"cell(1,2)"), 5);
  EXPECT_EQ(Read(L"2.5"), 2.5);
}

TEST_F(SubscriptTest, RecordAndFieldOfTheContextAreZero) {
  EXPECT_EQ(Read(L"rec"), 0);
  EXPECT_EQ(Read(L"fld+1"), 1);
}

TEST_F(SubscriptTest, WhatIsNoNumberIsZero) {
  EXPECT_EQ(Read(L""), 0);
  EXPECT_EQ(Read(L"abc"), 0);
  EXPECT_EQ(Read(L"str(\"a\")"), 0);
}

}  // namespace
}  // namespace orv::command::test
