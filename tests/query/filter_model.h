// Views worked out by plain loops over texts held in memory.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "support/driver.h"

namespace orv::test {

/// A table's texts: record r, field f is texts[r - 1][f - 1].
using Table = std::vector<std::vector<std::string>>;

/// What of a table a path shows, as the numbers of its records.
struct ModelView {
  std::vector<int> shown;

  static ModelView Whole(const Table& table);
  /// The view of those records of this one that satisfy `holds`, which gets the number in this view
  /// and the record. The runs are formed as views form them, so a view on a view may show other
  /// records than those that matched.
  ModelView Filter(const std::function<bool(int, int)>& holds, bool onView) const;
};

/// A condition and the same as a function of the number in the view and of the record's texts.
struct RandomCondition {
  std::wstring text;
  std::function<bool(int, const std::vector<std::string>&)> holds;
};

/// Makes conditions whose constants are taken from the table, so that they hold now and then.
class ConditionMaker {
 public:
  ConditionMaker(const Table& table, unsigned seed) : table_(table), random_(seed) {}

  RandomCondition Next();
  std::size_t Below(std::size_t count) { return random_() % count; }

 private:
  RandomCondition FieldForm();
  RandomCondition Comparison();
  RandomCondition Number();
  RandomCondition Part();
  RandomCondition Choice();
  RandomCondition Record();
  /// A text of the field that can stand in quotes.
  std::string TextOf(std::size_t f);

  const Table& table_;
  std::mt19937 random_;
};

}  // namespace orv::test
