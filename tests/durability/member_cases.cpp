#include "durability/member_cases.h"

#include <stdexcept>

#include "dialogs/recording_interface.h"
#include "support/hex_text.h"
#include "support/styled_file.h"

namespace orv::test {
namespace {

constexpr int kFreeStyle = 0;
constexpr int kFixedStyle = 1;
constexpr int kDictionaryStyle = 11;
constexpr int kContainerFile = 1;
constexpr int kTextFile = 0;
constexpr int kRecords = 5;
constexpr int kOwnType = -2;
constexpr int kTitleEntry = -8;

void Require(Driver& db) {
  if (db.Error() != 0) throw std::runtime_error("rich file: error " + std::to_string(db.Error()));
}

std::string Text(std::size_t length, char c = 'x') { return std::string(length, c); }

void AddFieldsOneByOne(Driver& db) {
  for (int f = styled::kFields + 1; f <= styled::kFields + 3; ++f) {
    db.AddFields(L"", 1, f);
    db.Set(L"", 0, f, "late field " + std::to_string(f));
    db.Set(L"", 1, f, "late " + std::to_string(f));
  }
  Require(db);
}

void FillDictionary(Driver& db) {
  constexpr int kGreatestOfByte = 255;
  for (int i = db.Records(L"/#/[2,3]/[1,2]"); i < kGreatestOfByte; ++i) {
    db.Set(L"", 1, styled::kDictionary, "entry " + std::to_string(i));
  }
  Require(db);
}

/// Answers every question with OK while it lives.
class Agreement {
 public:
  Agreement() { screen_.answers = {Button::kOk, Button::kOk}; }

 private:
  RecordingInterface screen_;
};

void New(Driver& db) {
  const Agreement agreement;
  db.New("brand new");
}

// The old file is deleted before the new one is created, as the user agreed.
std::string NoFile(const Snapshot&, const Snapshot&, const Snapshot& seen) {
  return seen.size() == 1 && seen.at("kind") == "0" ? "" : "neither a table nor nothing";
}

/// What an interrupted insertion of `count` records at `row` leaves: the records are counted; in
/// each field those behind some point have moved, those before it have not, and the `count` records
/// between them show what they held or are empty.
auto MovedRecords(std::string matrix, int row, int count) {
  return [=](const Snapshot& before, const Snapshot& after, const Snapshot& seen) -> std::string {
    const auto cell = [&](const Snapshot& snapshot, int r, int f) {
      const auto found = snapshot.find(matrix + " r" + std::to_string(r) + "f" + std::to_string(f));
      return found == snapshot.end() ? std::string("none") : found->second;
    };
    const int records = std::stoi(before.at(matrix + " records"));
    const int fields = std::stoi(before.at(matrix + " fields"));
    if (seen.at(matrix + " records") != after.at(matrix + " records")) return "not counted";
    const auto hasMovedFrom = [&](int f, int border) {
      for (int r = 1; r <= records + count; ++r) {
        const std::string is = cell(seen, r, f);
        const bool gap = r >= border && r < border + count;
        const bool kept = r < border + count && is == cell(before, r, f);
        const bool emptied = gap && is == cell(after, row, f);
        const bool moved = r >= border + count && is == cell(before, r - count, f);
        if (!kept && !emptied && !moved) return false;
      }
      return true;
    };
    for (int f = 1; f <= fields; ++f) {
      bool found = false;
      for (int border = row; border <= records + 1 && !found; ++border) {
        found = hasMovedFrom(f, border);
      }
      if (!found) return "field " + std::to_string(f) + " has moved in another way";
    }
    return {};
  };
}

/// When field after field has moved down, the last slot is empty before the count says so.
std::string EmptyLastField(const Snapshot& before, const Snapshot& after, const Snapshot& seen) {
  const std::string last = "f" + before.at(" fields");
  Snapshot others = seen;
  std::string wrong;
  for (const auto& [key, value] : seen) {
    const std::string where = key.substr(0, key.find(' ', 1));
    if (key.front() != ' ' || !where.ends_with(last)) continue;
    const bool isEmpty = key.ends_with(" code") || value.ends_with(" (error 255)") || value.empty();
    if (!isEmpty) wrong += key + "\n";
    others.erase(key);
  }
  return wrong + Compare(before, after, others).strange;
}

/// The cell of the property "dictionary" holds a text for a moment, until the dictionary stands in
/// its place.
std::string TextInPlaceOfDictionary(const Snapshot& before, const Snapshot& after,
                                    const Snapshot& seen) {
  constexpr const char* kCell = "/#/[5,3] r1f2 code";
  Snapshot others = seen;
  others.erase(kCell);
  if (seen.at(kCell) != "1") return "the cell holds neither a text nor a dictionary";
  return Compare(before, after, others).strange;
}

/// What an interrupted rewriting of a text of several pieces leaves: pieces are rewritten one after
/// the other, so the beginning is the new text's and the rest the old one's, and the border lies
/// between two pieces.
auto TornText(std::string key, std::vector<std::size_t> borders) {
  return [=](const Snapshot& before, const Snapshot& after, const Snapshot& seen) -> std::string {
    const std::string& was = before.at(key);
    const std::string& becomes = after.at(key);
    bool torn = false;
    for (const std::size_t border : borders) {
      torn = torn || seen.at(key) == becomes.substr(0, border) + was.substr(border);
    }
    if (!torn) return "the text is torn elsewhere";
    Snapshot others = seen;
    others[key] = was;
    return Compare(before, after, others).strange;
  };
}

void MakeDbaseTable(Driver& db) {
  db.Use(L"table.dbf");
  std::string table = FromHex(
      "03 7c 01 01  03 00 00 00  61 00  0c 00  00*20 \"NAME\" 00*7  \"C\" 00*4  05  00*15"
      "  \"TOWN\" 00*7  \"C\" 00*4  06  00*15  0d");
  for (int r = 1; r <= 3; ++r)
    table += " " + std::to_string(10000 + r) + std::to_string(200000 + r);
  WriteBytes(db.file(), table);
}

void Run(Driver& db, std::wstring command) {
  std::wstring path = db.Path();
  std::int32_t record = 1;
  std::int16_t field = 1;
  db.engine.ExecCmd(command, path, record, field);
}

MemberCase Set(std::string what, std::wstring steps, int r, int f, std::string text) {
  return {"SetCellValue: " + what, [=](Driver& db) { db.Set(steps, r, f, text); }};
}

void AppendCellCases(std::vector<MemberCase>& cases) {
  cases.push_back(Set("a new cell", L"", 5, 1, "new"));
  cases.push_back(Set("the same length", L"", 1, 1, "First"));
  cases.push_back(Set("a shorter text", L"", 1, 1, "1"));
  cases.push_back(Set("a longer text", L"", 1, 1, "first and more"));
  cases.push_back(Set("a text of several pieces", L"", 2, 1, "ABCDEFGHIJKLMNOPQRSTUVW"));
  cases.back().window = TornText(" r2f1", {4, 8});
  cases.push_back(Set("the long form", L"", 1, 1, Text(300)));
  cases.back().guarantee = Guarantee::kTexts;
  cases.push_back(Set("fewer pieces than before", L"", 2, 1, "ABCDEF"));
  cases.back().window = TornText(" r2f1", {4});
  cases.push_back(Set("a longer long text", L"", 4, 1, Text(1000)));
  cases.back().window = TornText(" r4f1", {6});
  cases.push_back(Set("an emptied cell", L"", 4, 1, ""));
  cases.push_back(Set("a nested matrix's title", L"", 3, 1, "a longer title than before"));
  cases.push_back(Set("a cell of a nested matrix", L"/[3,1]", 2, 2, "deep down"));
  cases.push_back(Set("a field's name", L"", 0, 1, "a longer name"));
  cases.push_back(Set("a fixed text", L"", 1, styled::kText, "fixed"));
  cases.push_back(Set("a packed number", L"", 1, styled::kPacked, "-1234"));
  cases.push_back(Set("an int", L"", 1, styled::kInt, "-123456789"));
  cases.push_back(Set("a known dictionary value", L"", 1, styled::kDictionary, "two"));
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().again = Again::kSameTexts;
  cases.push_back(Set("a new dictionary value", L"", 1, styled::kDictionary, "brand new"));
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().again = Again::kSameTexts;
  cases.push_back(Set("no dictionary value", L"", 1, styled::kDictionary, ""));
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().again = Again::kSameTexts;
  cases.push_back(Set("a wider index", L"", 2, styled::kDictionary, "value 256"));
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().prepare = FillDictionary;
  cases.back().again = Again::kSameTexts;
  cases.push_back(Set("a field without data", L"", 3, styled::kFields + 1, "first cell"));
  cases.back().prepare = [](Driver& db) { db.AddFields(L"", 1, styled::kFields + 1); };
  cases.push_back(Set("through a view", L"/f(5)=one", 1, 1, "seen through a view"));
  cases.push_back(
      {"SetCellValue: dBASE III", [](Driver& db) { db.Set(L"", 2, 2, "change"); }, MakeDbaseTable});
}

void AppendRecordCases(std::vector<MemberCase>& cases) {
  const auto insert = [&](const std::string& what, const std::wstring& steps, int count, int row) {
    cases.push_back(
        {"CmdAddRecord: " + what, [=](Driver& db) { db.AddRecords(steps, count, row); }});
    cases.back().again = Again::kNothing;
  };
  insert("at the end", L"", 2, kRecords + 1);
  insert("the first of a matrix", L"/[3,1]/[2,1]", 2, 1);
  insert("in the middle", L"", 2, 2);
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().also = MovedRecords("", 2, 2);
  cases.back().problems = {"overlaps"};
  insert("in the middle of one block", L"/[3,1]", 1, 1);
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().also = MovedRecords("/[3,1]", 1, 1);
  cases.back().problems = {"overlaps"};
}

void AppendFieldCases(std::vector<MemberCase>& cases) {
  const auto add = [&](const std::string& what, const std::wstring& steps, int count, int f) {
    cases.push_back({"CmdAddFld: " + what, [=](Driver& db) { db.AddFields(steps, count, f); }});
    cases.back().again = Again::kNothing;
  };
  const auto remove = [&](const std::string& what, int f) {
    cases.push_back({"CmdDelFld: " + what, [=](Driver& db) { db.DeleteField(L"", f); }});
    cases.back().again = Again::kNothing;
  };
  add("at the end", L"", 2, styled::kFields + 1);
  cases.back().problems = {"the slot does not agree with the count"};
  add("the first of a matrix", L"/[4,1]", 3, 1);
  cases.back().prepare = [](Driver& db) { db.Put(L"", 4, 1, "bare"); };
  add("in the middle", L"", 2, 2);
  cases.back().problems = {"the slot does not agree with the count"};
  add("at the last", L"", 1, styled::kFields);
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().problems = {"the slot does not agree with the count"};
  add("in the middle of many blocks", L"", 2, 3);
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().problems = {"the slot does not agree with the count", "overlaps"};
  cases.back().prepare = AddFieldsOneByOne;
  add("in place of a deleted one", L"", 1, 2);
  cases.back().prepare = [](Driver& db) { db.DeleteField(L"", styled::kFields); };
  remove("the first", 1);
  remove("the last", styled::kFields);
  remove("one of many blocks", 3);
  cases.back().guarantee = Guarantee::kEachValue;
  cases.back().window = EmptyLastField;
  cases.back().problems = {"the slot does not agree with the count", "overlaps"};
  cases.back().prepare = AddFieldsOneByOne;
}

void AppendStructureCases(std::vector<MemberCase>& cases) {
  cases.push_back({"PutMatrix: an empty cell", [](Driver& db) { db.Put(L"", 5, 1, "nested"); }});
  cases.push_back({"PutMatrix: a cell with a text", [](Driver& db) { db.Put(L"", 1, 1, ""); }});
  cases.push_back(
      {"PutMatrix: a type table", [](Driver& db) { db.Put(L"/[3,1]", kOwnType, 1, "Types"); }});
  cases.push_back({"InsFirstLvlMtx", [](Driver& db) { db.InsertTop(); }});
  cases.back().again = Again::kNothing;
  cases.push_back({"SetTitle: a shorter one", [](Driver& db) { db.SetTitle(L"", "t"); }});
  cases.push_back(
      {"SetTitle: a longer one", [](Driver& db) { db.SetTitle(L"", "a much longer title"); }});
  cases.push_back({"ReBit: to the long form", [](Driver& db) { db.ReBit(L"", 1, 1, 4); }});
  cases.push_back({"ReBit: to the short form", [](Driver& db) { db.ReBit(L"", 4, 1, 1); }});
}

void AppendTypeCases(std::vector<MemberCase>& cases) {
  const auto set = [&](const std::string& what, const std::wstring& steps, int r, int f,
                       const std::string& name, const std::string& value) {
    cases.push_back(
        {"SetTypeValue: " + what, [=](Driver& db) { db.SetType(steps, r, f, name, value); }});
    cases.back().again = Again::kSameTexts;
    cases.back().guarantee = Guarantee::kTexts;
  };
  set("a new type", L"", 1, 1, "unit", "km");
  set("a new type of an empty cell", L"", 5, 1, "unit", "km");
  set("a new type of a field", L"", kOwnType, 2, "unit", "km");
  set("the titles' entry", L"", kTitleEntry, 1, "font", "bold");
  set("a new property", L"", 2, 1, "unit", "km");
  set("a property's value", L"", 2, 1, "hint", "another hint");
  set("the first of a matrix", L"/[3,1]", 1, 1, "unit", "km");
}

void AppendStyleCases(std::vector<MemberCase>& cases) {
  const auto convert = [&](const std::string& what, int f, int style, int size = 0, int type = 0) {
    cases.push_back({"SetFldStyle: " + what,
                     [=](Driver& db) { db.SetStyle(L"", f, style, size, false, type); }});
  };
  constexpr int kExtra = styled::kFields + 1;
  constexpr int kInteger = 1;
  const auto addExtra = [](Driver& db) {
    db.AddFields(L"", 1, kExtra);
    for (int r = 1; r < kRecords; ++r) db.Set(L"", r, kExtra, std::to_string(r % 3));
    Require(db);
  };
  convert("free to fixed", kExtra, kFixedStyle, 3);
  cases.back().prepare = addExtra;
  convert("free to fixed integers", kExtra, kFixedStyle, 2, kInteger);
  cases.back().prepare = [=](Driver& db) {
    addExtra(db);
    db.Set(L"", kRecords, kExtra, "9");
  };
  convert("free to dictionary", kExtra, kDictionaryStyle);
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().window = TextInPlaceOfDictionary;
  cases.back().again = Again::kSameTexts;
  cases.back().prepare = addExtra;
  convert("fixed to free", styled::kText, kFreeStyle);
  convert("fixed to dictionary", styled::kText, kDictionaryStyle);
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().window = TextInPlaceOfDictionary;
  cases.back().again = Again::kSameTexts;
  convert("dictionary to free", styled::kDictionary, kFreeStyle);
  convert("dictionary to fixed", styled::kDictionary, kFixedStyle, 8);
  convert("to a dictionary once more", styled::kDictionary, kDictionaryStyle);
  cases.back().guarantee = Guarantee::kTexts;
  cases.back().prepare = [](Driver& db) { db.SetStyle(L"", styled::kDictionary, kFreeStyle); };
}

void AppendFileCases(std::vector<MemberCase>& cases) {
  cases.push_back({"CmdNewOrvDB: a new file", New, [](Driver& db) { db.Use(L"new.orv"); }});
  cases.push_back({"CmdNewOrvDB: over an old one", New});
  cases.back().window = NoFile;
  const auto save = [&](const std::string& what, bool withProperties, int type) {
    cases.push_back({"SaveMtxAs: " + what, [=](Driver& db) {
                       const Agreement agreement;
                       db.SaveAs(L"", L"target", withProperties, type);
                     }});
    cases.back().target = L"target";
  };
  save("a text", false, kTextFile);
  cases.back().writesNothing = true;
  save("a text and an extracted picture", false, kTextFile);
  cases.back().prepare = [](Driver& db) {
    db.SetType(L"", 1, 1, "type", "image");
    db.Set(L"", 1, 1, "GIF and so on");
    Require(db);
  };
  cases.back().writesNothing = true;
  save("a container of values", false, kContainerFile);
  save("a container with properties", true, kContainerFile);
  cases.push_back(
      {"ExecCmd: an assignment", [](Driver& db) { Run(db, L"set cell(1,1)=cell(2,1);"); }});
  cases.back().writesNothing = true;
}

std::vector<MemberCase> AllCases() {
  std::vector<MemberCase> cases;
  AppendCellCases(cases);
  AppendRecordCases(cases);
  AppendFieldCases(cases);
  AppendStructureCases(cases);
  AppendTypeCases(cases);
  AppendStyleCases(cases);
  AppendFileCases(cases);
  return cases;
}

}  // namespace

void MakeRichFile(Driver& db) {
  MakeStyledFile(db);
  db.AddRecords(L"", 3, 1);
  db.AddRecords(L"", 1, 4);
  db.AddRecords(L"", 1, kRecords);
  const char* const texts[] = {"first", "abcd", "third", "fourth"};
  const char* const values[] = {"one", "two", "one", "three"};
  for (int r = 1; r < kRecords; ++r) {
    db.Set(L"", r, styled::kFree, texts[r - 1]);
    db.Set(L"", r, styled::kText, "t" + std::to_string(r));
    db.Set(L"", r, styled::kPacked, std::to_string(r * 100));
    db.Set(L"", r, styled::kInt, std::to_string(r * 1000));
    db.Set(L"", r, styled::kDictionary, values[r - 1]);
  }
  for (int f = 1; f <= styled::kFields; ++f) db.Set(L"", 0, f, "field " + std::to_string(f));
  db.Set(L"", 2, 1, "abcdefgh");
  db.Set(L"", 2, 1, "abcdefghijklmnop");
  db.Set(L"", 4, 1, Text(400, 'l'));
  db.SetType(L"", 2, 1, "hint", "a hint");
  db.SetType(L"", 0, 1, "hint", "a name");
  db.Put(L"", 3, 1, "");
  db.AddFields(L"/[3,1]", 2, 1);
  db.AddRecords(L"/[3,1]", 3, 1);
  db.Set(L"/[3,1]", 1, 2, "deep");
  db.Set(L"/[3,1]", 3, 1, "bottom");
  db.Put(L"/[3,1]", 2, 1, "deeper");
  db.AddFields(L"/[3,1]/[2,1]", 1, 1);
  Require(db);
  db.CloseAll();
}

const std::vector<MemberCase>& MemberCases() {
  static const std::vector<MemberCase> cases = AllCases();
  return cases;
}

}  // namespace orv::test
