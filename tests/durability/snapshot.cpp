#include "durability/snapshot.h"

#include <cstdint>
#include <set>

#include "platform/code_page.h"

namespace orv::test {
namespace {

constexpr int kDbase = 2;
constexpr std::size_t kDeepestSteps = 60;

std::string Narrow(const std::wstring& text) { return platform::ToBytes(text); }

class Reader {
 public:
  explicit Reader(Driver& db) : db_(db) {}

  Snapshot Read() {
    const bool isThere = Exists(db_.file()) && !ReadBytes(db_.file()).empty();
    const int kind = isThere ? db_.Kind() : 0;
    seen_["kind"] = std::to_string(kind);
    if (kind == kDbase) ReadCells(L"", db_.Records(), db_.Fields());
    if (kind == 1) ReadMatrix(L"");
    return std::move(seen_);
  }

 private:
  void Note(const std::wstring& steps, const std::string& what, std::string value) {
    const int code = db_.Error();
    if (code != 0) value += " (error " + std::to_string(code) + ")";
    seen_[Narrow(steps) + " " + what] = std::move(value);
  }

  void ReadMatrix(const std::wstring& steps) {
    Note(steps, "title", db_.Title(steps));
    const int records = db_.Records(steps);
    Note(steps, "records", std::to_string(records));
    const int fields = db_.Fields(steps);
    Note(steps, "fields", std::to_string(fields));
    for (int f = 1; f <= fields; ++f) {
      const std::string field = "f" + std::to_string(f);
      Note(steps, field + " name", db_.Get(steps, 0, f));
      Note(steps, field + " style", db_.Style(steps, f));
      Note(steps, field + " code", std::to_string(db_.Id(steps, -2, f)));
      Note(steps, field + " name code", std::to_string(db_.Id(steps, 0, f)));
    }
    ReadCells(steps, records, fields);
    const std::wstring properties = steps + L"/#";
    if (db_.Records(properties) >= 0 && steps.size() < kDeepestSteps) ReadMatrix(properties);
  }

  void ReadCells(const std::wstring& steps, int records, int fields) {
    std::wstring path = db_.Path(steps);
    for (int r = 1; r <= records; ++r) {
      for (int f = 1; f <= fields; ++f) {
        const std::string cell = "r" + std::to_string(r) + "f" + std::to_string(f);
        std::int32_t record = r;
        auto field = static_cast<std::int16_t>(f);
        Boolean isMtx = Boolean::kFalse;
        Boolean frml = Boolean::kFalse;
        Note(steps, cell, Narrow(db_.engine.GetCellValue(path, record, field, isMtx, frml)));
        Note(steps, cell + " code", std::to_string(db_.Id(steps, r, f)));
        if (!IsTrue(isMtx) || steps.size() >= kDeepestSteps) continue;
        ReadMatrix(steps + L"/[" + std::to_wstring(r) + L"," + std::to_wstring(f) + L"]");
      }
    }
  }

  Driver& db_;
  Snapshot seen_;
};

const std::string* ValueOf(const Snapshot& snapshot, const std::string& key) {
  const auto found = snapshot.find(key);
  return found == snapshot.end() ? nullptr : &found->second;
}

bool IsBlank(const std::string& value) { return value.empty() || value == "0"; }

bool IsAdmissible(const std::string* before, const std::string* after, const std::string* seen) {
  if (seen == nullptr) return before == nullptr || after == nullptr;
  if (before != nullptr && *seen == *before) return true;
  if (after != nullptr && *seen == *after) return true;
  return before == nullptr && after != nullptr && IsBlank(*seen);
}

/// The texts of cells, names and titles, wherever they stand.
std::set<std::string> AllTexts(const Snapshot& snapshot) {
  std::set<std::string> texts;
  for (const auto& [key, value] : snapshot) {
    const bool isText = !key.starts_with("/#") && !key.ends_with(" code") && key != "kind" &&
                        !key.ends_with(" style") && !key.ends_with(" records") &&
                        !key.ends_with(" fields");
    if (isText && !value.empty()) texts.insert(value);
  }
  return texts;
}

std::string LostTexts(const Snapshot& before, const Snapshot& after, const Snapshot& seen) {
  const std::set<std::string> kept = AllTexts(after);
  const std::set<std::string> present = AllTexts(seen);
  std::string lost;
  for (const std::string& text : AllTexts(before)) {
    if (kept.contains(text) && !present.contains(text)) lost += text + "\n";
  }
  return lost;
}

std::string Text(const std::string* value) {
  return value == nullptr ? "nothing" : "\"" + *value + "\"";
}

}  // namespace

Snapshot TakeSnapshot(Driver& db) { return Reader(db).Read(); }

Comparison Compare(const Snapshot& before, const Snapshot& after, const Snapshot& seen) {
  Comparison result{{}, LostTexts(before, after, seen), seen == before, seen == after};
  std::set<std::string> keys;
  for (const Snapshot* snapshot : {&before, &after, &seen}) {
    for (const auto& [key, value] : *snapshot) keys.insert(key);
  }
  for (const std::string& key : keys) {
    const std::string* const was = ValueOf(before, key);
    const std::string* const becomes = ValueOf(after, key);
    const std::string* const is = ValueOf(seen, key);
    if (IsAdmissible(was, becomes, is)) continue;
    result.strange += key + ": " + Text(was) + " -> " + Text(becomes) + ", seen " + Text(is) + "\n";
  }
  return result;
}

}  // namespace orv::test
