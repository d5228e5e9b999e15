#include "durability/workload.h"

#include <array>

#include "support/styled_file.h"

namespace orv::test {
namespace {

constexpr int kConverted = styled::kFields + 1;
constexpr std::size_t kGreatestTable = 400;
constexpr int kWidth = 8;

struct Style {
  int freeSize;
  int cellSize;
};
constexpr std::array<Style, 4> kStyles = {{{0, 0}, {1, kWidth}, {11, 0}, {1, kWidth}}};

std::vector<std::string> EmptyRecord() { return {"", "", "0", "0", "", ""}; }

}  // namespace

void Workload::MakeFile(Driver& db) {
  MakeStyledFile(db);
  db.AddFields(L"", 1, kConverted);
  db.CloseAll();
}

WorkloadCall Workload::Next() {
  using Kind = WorkloadCall::Kind;
  const auto records = static_cast<unsigned>(table_.size());
  const unsigned choice = Below(1000);
  if (records == 0 || (choice < 150 && records < kGreatestTable)) return {Kind::kAppend, 0, 0, {}};
  if (choice < 170 && records < kGreatestTable) {
    return {Kind::kInsert, static_cast<int>(1 + Below(records)), 0, {}};
  }
  if (choice >= 995) return {Kind::kConvert, 0, kConverted, {}};
  const int f = static_cast<int>(1 + Below(kFields));
  return {Kind::kSet, static_cast<int>(1 + Below(records)), f, TextFor(f)};
}

std::string Workload::TextFor(int f) {
  const std::string number = std::to_string(Below(30000));
  switch (f) {
    case styled::kFree: {
      constexpr std::array<std::size_t, 6> kLengths = {1, 5, 20, 200, 300, 3000};
      std::string text = number;
      text.resize(kLengths[Below(kLengths.size())], static_cast<char>('a' + Below(26)));
      return text;
    }
    case styled::kText:
      return number;
    case styled::kPacked:
    case styled::kInt:
      return number;
    case styled::kDictionary:
      return "value " + std::to_string(Below(600));  // more than an index of one byte can name
    default:
      return "w" + std::to_string(Below(100));
  }
}

void Workload::Call(const WorkloadCall& call, Driver& db) const {
  const int records = static_cast<int>(table_.size());
  switch (call.kind) {
    case WorkloadCall::Kind::kSet:
      return db.Set(L"", call.r, call.f, call.text);
    case WorkloadCall::Kind::kAppend:
      return db.AddRecords(L"", 1, records + 1);
    case WorkloadCall::Kind::kInsert:
      return db.AddRecords(L"", 1, call.r);
    case WorkloadCall::Kind::kConvert: {
      const Style next = kStyles[static_cast<std::size_t>(style_ + 1) % kStyles.size()];
      return db.SetStyle(L"", call.f, next.freeSize, next.cellSize);
    }
  }
}

void Workload::Apply(const WorkloadCall& call) {
  switch (call.kind) {
    case WorkloadCall::Kind::kSet:
      table_[static_cast<std::size_t>(call.r - 1)][static_cast<std::size_t>(call.f - 1)] =
          call.text;
      return;
    case WorkloadCall::Kind::kAppend:
      table_.push_back(EmptyRecord());
      return;
    case WorkloadCall::Kind::kInsert: {
      // At the last record nothing moves: the new one follows it.
      const bool moves = call.r < static_cast<int>(table_.size());
      table_.insert(moves ? table_.begin() + call.r - 1 : table_.end(), EmptyRecord());
      return;
    }
    case WorkloadCall::Kind::kConvert:
      style_ = (style_ + 1) % static_cast<int>(kStyles.size());
      return;
  }
}

}  // namespace orv::test
