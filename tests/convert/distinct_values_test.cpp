#include "convert/distinct_values.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace orv::convert {
namespace {

TEST(DistinctValues, AreNumberedInOrderOfFirstOccurrence) {
  DistinctValues values;
  EXPECT_EQ(values.Add("b"), 1);
  EXPECT_EQ(values.Add("a"), 2);
  EXPECT_EQ(values.Add("b"), 1);
  EXPECT_EQ(values.Add(""), 3);
  EXPECT_EQ(values.size(), 3);
  EXPECT_EQ(values.Value(1), "b");
  EXPECT_EQ(values.Count(1), 2);
  EXPECT_EQ(values.Value(3), "");
  EXPECT_EQ(values.Count(3), 1);
}

TEST(DistinctValues, DifferByCaseTrailingBlanksAndZeroBytes) {
  DistinctValues values;
  for (const std::string& text : {std::string("a"), std::string("A"), std::string("a "),
                                  std::string("a\0", 2), std::string("\0a", 2)}) {
    values.Add(text);
  }
  EXPECT_EQ(values.size(), 5);
}

TEST(DistinctValues, KeepsTextsOfEveryLength) {
  DistinctValues values;
  std::vector<std::string> texts;
  for (std::size_t length = 1; length < 2'000'000; length = length * 3 + 1) {
    texts.emplace_back(length, static_cast<char>('a' + static_cast<char>(texts.size())));
    values.Add(texts.back());
  }
  ASSERT_EQ(values.size(), std::ssize(texts));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_TRUE(values.Value(static_cast<std::int32_t>(i + 1)) == texts[i]) << i;
  }
}

TEST(DistinctValues, AgreeWithAMap) {
  const bool holds = rc::check("numbers and counts", [] {
    const auto texts = *rc::gen::container<std::vector<std::string>>(
        rc::gen::container<std::string>(rc::gen::inRange('a', 'd')));
    DistinctValues values;
    std::map<std::string, std::int32_t> numbers;
    std::map<std::string, std::int32_t> counts;
    for (const std::string& text : texts) {
      const auto known = numbers.try_emplace(text, static_cast<std::int32_t>(numbers.size()) + 1);
      ++counts[text];
      RC_ASSERT(values.Add(text) == known.first->second);
    }
    RC_ASSERT(values.size() == std::ssize(numbers));
    for (const auto& [text, number] : numbers) {
      RC_ASSERT(values.Value(number) == text);
      RC_ASSERT(values.Count(number) == counts[text]);
    }
  });
  EXPECT_TRUE(holds);
}

TEST(DistinctValues, HoldManyValues) {
  constexpr std::int32_t kValues = 200'000;
  DistinctValues values;
  for (int round = 0; round < 2; ++round) {
    for (std::int32_t i = 1; i <= kValues; ++i) ASSERT_EQ(values.Add(std::to_string(i)), i);
  }
  EXPECT_EQ(values.size(), kValues);
  EXPECT_EQ(values.Value(kValues), std::to_string(kValues));
  EXPECT_EQ(values.Count(kValues), 2);
}

}  // namespace
}  // namespace orv::convert
