// The fast double-ended selection arranges the keys exactly as the plain one does.
#include "query/selection.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/tier.h"

namespace orv {
namespace {

using query::DoubleEndedSelection;
using query::RankKeys;
using query::SortKeys;
using Texts = std::vector<std::string>;

SortKeys KeysOf(const Texts& texts) {
  SortKeys keys;
  keys.Reserve(static_cast<std::int32_t>(texts.size()));
  for (const std::string& text : texts) keys.Add(text);
  return keys;
}

/// The selection as it is stated: every position is looked at in every pass.
class PlainSelection {
 public:
  explicit PlainSelection(Texts texts) : keys(std::move(texts)) {
    for (std::size_t r = 1; r <= keys.size(); ++r) order.push_back(static_cast<int>(r));
  }

  void Pass(std::size_t pass) {
    const std::size_t i = pass - 1;
    const std::size_t h = keys.size() - pass;
    std::string least = keys[i];
    std::string greatest = keys[i];
    std::size_t leastAt = i;
    std::size_t greatestAt = i;
    for (std::size_t j = i; j <= h; ++j) {
      if (keys[j] < least) {
        least = keys[j];
        leastAt = j;
      }
      if (keys[j] > greatest) {
        greatest = keys[j];
        greatestAt = j;
      }
    }
    keys[leastAt] = keys[i];
    keys[greatestAt] = keys[h];
    const int savedLeast = order[leastAt];
    const int savedGreatest = order[greatestAt];
    order[leastAt] = order[i];
    order[greatestAt] = order[h];
    keys[i] = least;
    keys[h] = greatest;
    order[i] = savedLeast;
    order[h] = savedGreatest;
  }

  Texts keys;
  std::vector<int> order;
};

Texts KeysOf(const DoubleEndedSelection& selection, const Texts& texts) {
  Texts keys;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    keys.push_back(texts[static_cast<std::size_t>(selection.KeyAt(static_cast<std::int32_t>(i)))]);
  }
  return keys;
}

std::vector<int> OrderOf(const DoubleEndedSelection& selection, std::size_t count) {
  std::vector<int> order;
  for (std::size_t i = 0; i < count; ++i) {
    order.push_back(selection.KeyAt(static_cast<std::int32_t>(i)) + 1);
  }
  return order;
}

void ExpectSamePasses(const Texts& texts) {
  PlainSelection plain(texts);
  const SortKeys keys = KeysOf(texts);
  DoubleEndedSelection fast(keys);
  ASSERT_EQ(fast.Passes(), static_cast<int>(texts.size() / 2));
  for (std::int32_t pass = 1; pass <= fast.Passes(); ++pass) {
    plain.Pass(static_cast<std::size_t>(pass));
    fast.Pass(pass);
    ASSERT_EQ(KeysOf(fast, texts), plain.keys) << "pass " << pass << " of " << texts.size();
    ASSERT_EQ(OrderOf(fast, texts.size()), plain.order) << "pass " << pass;
  }
}

TEST(SelectionTest, SortsDistinctKeys) {
  const Texts texts = {"b", "d", "a", "c"};
  const SortKeys keys = KeysOf(texts);
  DoubleEndedSelection selection(keys);
  selection.Pass(1);
  selection.Pass(2);
  EXPECT_EQ(KeysOf(selection, texts), (Texts{"a", "b", "c", "d"}));
  EXPECT_EQ(OrderOf(selection, 4), (std::vector<int>{3, 1, 4, 2}));
}

TEST(SelectionTest, ThreeKeysTakeOnePass) {
  const Texts texts = {"b", "c", "a"};
  const SortKeys keys = KeysOf(texts);
  DoubleEndedSelection selection(keys);
  EXPECT_EQ(selection.Passes(), 1);
  ExpectSamePasses(texts);
}

TEST(SelectionTest, TheGreatestKeyAtTheFrontIsLeftInTheSortAndTheLastOneIsLost) {
  const Texts texts = {"z", "a", "m", "k"};
  const SortKeys keys = KeysOf(texts);
  DoubleEndedSelection selection(keys);
  selection.Pass(1);
  EXPECT_EQ(KeysOf(selection, texts), (Texts{"a", "z", "m", "z"}));
  EXPECT_EQ(OrderOf(selection, 4), (std::vector<int>{2, 1, 3, 1}));
  ExpectSamePasses(texts);
}

TEST(SelectionTest, EqualKeysLoseTheLastRecordInEachPass) {
  const Texts texts(6, "same");
  const SortKeys keys = KeysOf(texts);
  DoubleEndedSelection selection(keys);
  for (std::int32_t pass = 1; pass <= 3; ++pass) selection.Pass(pass);
  EXPECT_EQ(OrderOf(selection, 6), (std::vector<int>{1, 2, 3, 3, 2, 1}));
}

TEST(SelectionTest, NoKeysAndOneKeyNeedNoPass) {
  const SortKeys none = KeysOf(Texts{});
  EXPECT_EQ(DoubleEndedSelection(none).Passes(), 0);
  const SortKeys one = KeysOf(Texts{"a"});
  EXPECT_EQ(DoubleEndedSelection(one).Passes(), 0);
}

TEST(SelectionTest, KeysCompareByCharacterCodeAndLength) {
  const Texts texts = {std::string("a\0", 2), "a",        "\xFF", "A",    "",  "aaaaaaaab",
                       "aaaaaaaaa",           "aaaaaaaa", "b",    "\x80", "a "};
  const SortKeys keys = KeysOf(texts);
  const query::KeyRanks ranks = RankKeys(keys);
  for (std::size_t i = 1; i < texts.size(); ++i) {
    const auto before = static_cast<std::size_t>(ranks.sorted[i - 1]);
    const auto here = static_cast<std::size_t>(ranks.sorted[i]);
    EXPECT_LT(texts[before], texts[here]);
  }
  ExpectSamePasses(texts);
}

/// Random keys of up to `greatestLength` letters out of `letters`: the fewer, the more equal ones.
Texts RandomKeys(std::mt19937& random, std::size_t count, int letters, int greatestLength) {
  std::uniform_int_distribution<int> length(0, greatestLength);
  std::uniform_int_distribution<int> letter(0, letters - 1);
  Texts texts(count);
  for (std::string& text : texts) {
    for (int left = length(random); left > 0; --left) {
      text += static_cast<char>('a' + letter(random) * 255 / letters);
    }
  }
  return texts;
}

TEST(SelectionTest, RandomKeysAreExchangedAsThePlainSelectionDoes) {
  std::mt19937 random(20240517);
  const int rounds = test::LongTier() ? 4000 : 400;
  int greatestInFront = 0;
  for (int round = 0; round < rounds; ++round) {
    const auto count = static_cast<std::size_t>(random() % 120);
    const int letters = 1 + static_cast<int>(random() % 26);
    const int greatestLength = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 12;
    Texts texts = RandomKeys(random, count, letters, greatestLength);
    if (count > 0 && round % 5 == 0) {
      texts.front() = "\xFF";
      ++greatestInFront;
    }
    ASSERT_NO_FATAL_FAILURE(ExpectSamePasses(texts)) << "round " << round;
  }
  EXPECT_GT(greatestInFront, rounds / 10);
}

TEST(SelectionTest, ManyEqualKeysAreExchangedAsThePlainSelectionDoes) {
  std::mt19937 random(7);
  for (const int letters : {1, 2, 3, 12}) {
    PlainSelection plain(RandomKeys(random, 2000, letters, 1));
    const Texts texts = plain.keys;
    const SortKeys keys = KeysOf(texts);
    DoubleEndedSelection fast(keys);
    for (std::int32_t pass = 1; pass <= fast.Passes(); ++pass) {
      plain.Pass(static_cast<std::size_t>(pass));
      fast.Pass(pass);
    }
    EXPECT_EQ(KeysOf(fast, texts), plain.keys);
    EXPECT_EQ(OrderOf(fast, texts.size()), plain.order);
  }
}

}  // namespace
}  // namespace orv
