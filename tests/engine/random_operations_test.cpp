// Random sequences of structural and cell operations against a plain model in memory, with a walk
// over the file's structures after each.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::Driver;
namespace styled = test::styled;

enum class Style { kFree, kText, kPacked, kInt, kDictionary };

struct Matrix;

struct Cell {
  std::string text;  ///< the title, of a nested matrix
  std::shared_ptr<Matrix> nested;
};

struct Field {
  Style style = Style::kFree;
  std::string name;
  std::vector<Cell> cells;
};

std::string EmptyText(Style style) {
  return style == Style::kPacked || style == Style::kInt ? "0" : "";
}

/// What a matrix holds, kept as plainly as can be.
struct Matrix {
  std::vector<Field> fields;
  int records = 0;

  Field NewField() const {
    return {Style::kFree, "", std::vector<Cell>(static_cast<std::size_t>(records))};
  }

  void AddFields(int count, int f) {
    const int n = static_cast<int>(fields.size());
    if (count < 1) return;
    if (f < 1) f = 1;
    if (f > n) f = n + 1;
    if (f == n) fields.back() = NewField();  // field n is made anew, the others follow it
    const int at = f < n ? f - 1 : n;
    fields.insert(fields.begin() + at, static_cast<std::size_t>(count), NewField());
  }
  void AddRecords(int count, int row) {
    const int at = row < records ? row - 1 : records;
    for (Field& field : fields) {
      field.cells.insert(field.cells.begin() + at, static_cast<std::size_t>(count),
                         Cell{EmptyText(field.style), nullptr});
    }
    records += count;
  }
  bool Has(int r, int f) const { return r >= 1 && r <= records && HasField(f); }
  bool HasField(int f) const { return f >= 1 && f <= static_cast<int>(fields.size()); }
  Field& At(int f) { return fields[static_cast<std::size_t>(f - 1)]; }
  Cell& At(int r, int f) { return At(f).cells[static_cast<std::size_t>(r - 1)]; }
};

/// One operation; its numbers are fitted to what the model has when it is carried out.
struct Operation {
  unsigned kind = 0;
  unsigned where = 0;
  unsigned record = 0;
  unsigned field = 0;
  unsigned amount = 0;
};

void showValue(const Operation& o, std::ostream& out) {
  out << "{" << o.kind << "," << o.where << "," << o.record << "," << o.field << "," << o.amount
      << "}";
}

constexpr unsigned kKinds = 14;

rc::Gen<Operation> AnyOperation() {
  const auto number = [](unsigned end) { return rc::gen::inRange(0U, end); };
  return rc::gen::construct<Operation>(number(kKinds), number(1000), number(1000), number(1000),
                                       number(1000));
}

std::string TextOf(unsigned amount) {
  constexpr std::size_t kLengths[] = {0, 1, 2, 3, 5, 8, 40, 254, 255, 256, 257, 300, 1000, 70000};
  const std::size_t length = kLengths[amount % std::size(kLengths)];
  return std::string(length, static_cast<char>('a' + amount % 26));
}

/// A text that the style can hold, and what it reads back as.
std::pair<std::string, std::string> ValueFor(Style style, unsigned amount) {
  switch (style) {
    case Style::kText: {
      const std::string text = TextOf(amount);
      return {text, text.substr(0, 5)};
    }
    case Style::kPacked: {
      const std::string number = std::to_string(static_cast<int>(amount) * 65 - 32500);
      return {number, number};
    }
    case Style::kInt: {
      const std::string number = std::to_string(static_cast<int>(amount) * 2000000 - 1000000000);
      return {number, number};
    }
    case Style::kDictionary: {
      const std::string value = amount % 7 == 0 ? "" : "value " + std::to_string(amount % 40);
      return {value, value};
    }
    default: {
      const std::string text = TextOf(amount);
      return {text, text};
    }
  }
}

/// The engine and the model side by side.
class Pair {
 public:
  /// A file whose root has no fields, or one of every style.
  explicit Pair(bool everyStyle) : root_(std::make_shared<Matrix>()) {
    if (!everyStyle) {
      db_.New("root");
      title_ = "root";
      return;
    }
    MakeStyledFile(db_);
    title_ = "styled";
    root_->AddFields(styled::kFields, 1);
    root_->At(styled::kText).style = Style::kText;
    root_->At(styled::kPacked).style = Style::kPacked;
    root_->At(styled::kInt).style = Style::kInt;
    root_->At(styled::kDictionary).style = Style::kDictionary;
  }

  void Do(const Operation& operation) {
    const Place at = PlaceFor(operation.where);
    Matrix& matrix = *at.matrix;
    // One number in ten misses what is there.
    const int r = static_cast<int>(operation.record) % (matrix.records + 2) +
                  (operation.record % 10 == 0 ? 0 : 1);
    const int f = static_cast<int>(operation.field) % (static_cast<int>(matrix.fields.size()) + 2) +
                  (operation.field % 10 == 0 ? 0 : 1);
    switch (operation.kind) {
      case 0:
        return AddFields(at, static_cast<int>(operation.amount % 4), f);
      case 1:
        return DeleteField(at, f);
      case 2:
      case 3:
        return AddRecords(at, static_cast<int>(operation.amount % 5), r);
      case 4:
      case 5:
      case 6:
      case 7:
        return Set(at, r, f, operation.amount);
      case 8:
      case 9:
        return Put(at, r, f, operation.amount);
      case 10:
        return Name(at, f, TextOf(operation.amount));
      case 11:
        return SetTitle(at, TextOf(operation.amount));
      case 12:
        return ReBit(at, r, f, operation.amount % 2 == 0 ? 1 : 4);
      default:
        return operation.amount % 3 == 0 ? InsertTop() : db_.CloseAll();
    }
  }

  void Compare() {
    RC_ASSERT(db_.Title() == title_);
    Compare(L"", *root_);
  }

  void CheckFile() {
    db_.CloseAll();
    const test::StructureWalk walk = test::WalkStructures(db_.Bytes());
    RC_ASSERT(walk.Text() == "");
  }

 private:
  struct Place {
    std::wstring steps;
    std::shared_ptr<Matrix> matrix;
    std::string* title = nullptr;
  };

  static void Collect(const Place& place, std::vector<Place>& places) {
    places.push_back(place);
    Matrix& matrix = *place.matrix;
    for (int f = 1; f <= static_cast<int>(matrix.fields.size()); ++f) {
      for (int r = 1; r <= matrix.records; ++r) {
        Cell& cell = matrix.At(r, f);
        if (!cell.nested) continue;
        Collect({place.steps + L"/[" + std::to_wstring(r) + L"," + std::to_wstring(f) + L"]",
                 cell.nested, &cell.text},
                places);
      }
    }
  }

  Place PlaceFor(unsigned where) {
    std::vector<Place> places;
    Collect({L"", root_, &title_}, places);
    return places[where % places.size()];
  }

  void Expect(bool success) {
    if (success) {
      RC_ASSERT(db_.Error() == 0);
    } else {
      RC_ASSERT(db_.Error() != 0);
    }
  }

  void AddFields(const Place& at, int count, int f) {
    db_.AddFields(at.steps, count, f);
    Expect(true);
    at.matrix->AddFields(count, f);
  }
  void DeleteField(const Place& at, int f) {
    db_.DeleteField(at.steps, f);
    Expect(at.matrix->HasField(f));
    if (at.matrix->HasField(f)) at.matrix->fields.erase(at.matrix->fields.begin() + f - 1);
  }
  void AddRecords(const Place& at, int count, int row) {
    db_.AddRecords(at.steps, count, row);
    if (row < 1) return Expect(false);
    Expect(count < 1 || !at.matrix->fields.empty());
    if (!at.matrix->fields.empty()) at.matrix->AddRecords(count, row);
  }
  void Set(const Place& at, int r, int f, unsigned amount) {
    if (r < 1) r = at.matrix->records + 1;
    const bool there = at.matrix->Has(r, f);
    const auto [text, stored] = ValueFor(there ? at.matrix->At(f).style : Style::kFree, amount);
    db_.Set(at.steps, r, f, text);
    Expect(there);
    if (there) at.matrix->At(r, f).text = stored;
  }
  void Put(const Place& at, int r, int f, unsigned amount) {
    if (at.steps.size() > 60) return;  // deep enough
    const std::string title = amount % 3 == 0 ? "" : TextOf(amount);
    db_.Put(at.steps, r, f, title);
    const bool there = at.matrix->Has(r, f) && at.matrix->At(f).style == Style::kFree;
    Expect(there);
    if (!there) return;
    Cell& cell = at.matrix->At(r, f);
    if (!title.empty()) cell.text = title;
    cell.nested = std::make_shared<Matrix>();
  }
  void Name(const Place& at, int f, const std::string& name) {
    db_.Set(at.steps, 0, f, name);
    Expect(at.matrix->HasField(f));
    if (at.matrix->HasField(f)) at.matrix->At(f).name = name;
  }
  void SetTitle(const Place& at, const std::string& title) {
    db_.SetTitle(at.steps, title);
    Expect(true);
    *at.title = title;
  }
  void ReBit(const Place& at, int r, int f, int form) {
    db_.ReBit(at.steps, r, f, form);
    // A deleted field whose slot is still there is no field and no error.
    if (at.matrix->HasField(f)) Expect(at.matrix->Has(r, f));
  }
  void InsertTop() {
    db_.InsertTop();
    Expect(true);
    auto top = std::make_shared<Matrix>();
    top->AddFields(1, 1);
    top->AddRecords(1, 1);
    top->At(1, 1) = {title_, root_};
    root_ = top;
    title_ = "First";
  }

  void Compare(const std::wstring& steps, Matrix& matrix) {
    RC_ASSERT(db_.Records(steps) == matrix.records);
    RC_ASSERT(db_.Fields(steps) == static_cast<int>(matrix.fields.size()));
    for (int f = 1; f <= static_cast<int>(matrix.fields.size()); ++f) {
      RC_ASSERT(db_.Get(steps, 0, f) == matrix.At(f).name);
      for (int r = 1; r <= matrix.records; ++r) {
        Cell& cell = matrix.At(r, f);
        RC_ASSERT(db_.Get(steps, r, f) == cell.text);
        RC_ASSERT(db_.Error() == 0);
        RC_ASSERT(db_.HoldsMatrix(steps, r, f) == (cell.nested != nullptr));
        if (!cell.nested) continue;
        Compare(steps + L"/[" + std::to_wstring(r) + L"," + std::to_wstring(f) + L"]",
                *cell.nested);
      }
    }
  }

  Driver db_;
  std::shared_ptr<Matrix> root_;
  std::string title_;
};

void RunSequence(bool everyStyle) {
  const auto operations = *rc::gen::container<std::vector<Operation>>(AnyOperation());
  Pair pair(everyStyle);
  for (const Operation& operation : operations) pair.Do(operation);
  pair.Compare();
  pair.CheckFile();
  pair.Compare();
}

RC_GTEST_PROP(RandomOperationsTest, NestedMatricesOfFreeFieldsAgreeWithTheModel, ()) {
  RunSequence(false);
}

RC_GTEST_PROP(RandomOperationsTest, MatricesWithFieldsOfEveryStyleAgreeWithTheModel, ()) {
  RunSequence(true);
}

}  // namespace
}  // namespace orv
