#include "query/filter_model.h"

#include <cstdlib>

#include "platform/code_page.h"

namespace orv::test {
namespace {

using Record = std::vector<std::string>;

std::wstring CellOf(std::size_t f) { return L"cell(rec," + std::to_wstring(f + 1) + L")"; }

std::wstring InQuotes(const std::string& text) { return L"\"" + platform::ToWide(text) + L"\""; }

/// The number that a text begins with. What else the standard reads as a number (infinities,
/// hexadecimal digits) is cut off before.
double NumberOf(const std::string& text) {
  return std::strtod(text.substr(0, text.find_first_not_of("0123456789.+-eE")).c_str(), nullptr);
}

}  // namespace

ModelView ModelView::Whole(const Table& table) {
  ModelView view;
  for (std::size_t r = 1; r <= table.size(); ++r) view.shown.push_back(static_cast<int>(r));
  return view;
}

ModelView ModelView::Filter(const std::function<bool(int, int)>& holds, bool onView) const {
  struct Run {
    int up;
    int end;
  };
  std::vector<Run> runs;
  std::size_t matched = 0;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const int number = static_cast<int>(i + 1);
    const int record = onView ? shown[i] : number;
    if (!holds(number, record)) continue;
    ++matched;
    if (!runs.empty() && runs.back().end == number - 1) {
      runs.back().end = record;
    } else {
      runs.push_back({record, record});
    }
  }
  ModelView view;
  for (const Run& run : runs) {
    for (int record = run.up; record <= run.end && view.shown.size() < matched; ++record) {
      view.shown.push_back(record);
    }
  }
  return view;
}

RandomCondition ConditionMaker::Next() {
  switch (Below(8)) {
    case 0:
    case 1:
      return FieldForm();
    case 2:
      return Comparison();
    case 3:
      return Number();
    case 4:
      return Part();
    case 5:
      return Choice();
    case 6:
      return Record();
    default: {
      // Two conditions joined: both must hold.
      const RandomCondition a = Comparison();
      const RandomCondition b = Part();
      return {L"if(" + a.text + L"," + b.text + L",false)", [a, b](int number, const auto& record) {
                return a.holds(number, record) && b.holds(number, record);
              }};
    }
  }
}

std::string ConditionMaker::TextOf(std::size_t f) {
  for (;;) {
    const std::string& text = table_[Below(table_.size())][f];
    if (text.find('"') == std::string::npos) return text;
  }
}

RandomCondition ConditionMaker::FieldForm() {
  const std::size_t f = Below(table_[0].size());
  const std::string text = TextOf(f);
  const bool equal = Below(4) != 0;
  return {L"f(" + std::to_wstring(f + 1) + (equal ? L")=" : L")<>") + InQuotes(text),
          [=](int, const auto& record) { return (record[f] == text) == equal; }};
}

RandomCondition ConditionMaker::Comparison() {
  const std::size_t f = Below(table_[0].size());
  const std::string text = TextOf(f);
  const std::size_t op = Below(4);
  const wchar_t* const names[] = {L"=", L"<>", L"<", L">"};
  return {CellOf(f) + names[op] + InQuotes(text), [=](int, const auto& record) {
            const int order = record[f].compare(text);
            return op == 0 ? order == 0 : op == 1 ? order != 0 : op == 2 ? order < 0 : order > 0;
          }};
}

RandomCondition ConditionMaker::Number() {
  const std::size_t f = Below(table_[0].size());
  const auto bound = static_cast<int>(Below(3000));
  const bool less = Below(2) == 0;
  return {L"val(" + CellOf(f) + (less ? L")<" : L")>") + std::to_wstring(bound),
          [=](int, const auto& record) {
            // A real is compared in single precision.
            const auto number = static_cast<float>(NumberOf(record[f]));
            const auto limit = static_cast<float>(bound);
            return less ? number < limit : number > limit;
          }};
}

RandomCondition ConditionMaker::Part() {
  const std::size_t f = Below(table_[0].size());
  std::string part = TextOf(f);
  const std::size_t start = part.empty() ? 0 : Below(part.size());
  part = part.substr(start, 1 + Below(4));
  return {L"instr(1," + CellOf(f) + L"," + InQuotes(part) + L")>0", [=](int, const auto& record) {
            return part.empty() || record[f].find(part) != std::string::npos;
          }};
}

RandomCondition ConditionMaker::Choice() {
  const RandomCondition a = Comparison();
  const RandomCondition b = Part();
  const RandomCondition c = Number();
  return {L"if(" + a.text + L"," + b.text + L"," + c.text + L")",
          [=](int number, const auto& record) {
            return a.holds(number, record) ? b.holds(number, record) : c.holds(number, record);
          }};
}

RandomCondition ConditionMaker::Record() {
  const int divisor = 2 + static_cast<int>(Below(9));
  return {L"rec\\" + std::to_wstring(divisor) + L"*" + std::to_wstring(divisor) + L"=rec",
          [=](int number, const auto&) { return number % divisor == 0; }};
}

}  // namespace orv::test
