#include "cli/import_source.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "cli/csv.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/read_file.h"

namespace orv::cli {
namespace {

// Rows are handed over in blocks: reading and writing in turn would make the engine resolve the two
// paths anew for every cell.
constexpr std::size_t kBlockRows = 2000;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class TextSource final : public ImportSource {
 public:
  TextSource(const std::string& file, const TextImport& options)
      : file_(file),
        options_(options),
        text_(ReadFile(file)),
        reader_(Content(), options.delimiter) {
    Survey();
    if (options_.header) NextRecord();
  }

  const std::vector<std::wstring>& names() const override { return names_; }
  std::int32_t records() const override { return records_; }

  void NextRows(std::vector<ImportRow>& rows) override {
    rows.resize(kBlockRows);
    std::size_t count = 0;
    while (count < kBlockRows && NextRecord()) {
      ImportRow& row = rows[count++];
      row.resize(cells_.size());
      for (std::size_t i = 0; i < cells_.size(); ++i)
        row[i] = *Decode(cells_[i], options_.encoding);
    }
    rows.resize(count);
  }

 private:
  std::string_view Content() const {
    const std::string_view text = text_;
    const bool marked = options_.encoding == Encoding::kUtf8 && text.starts_with(kByteOrderMark);
    return marked ? text.substr(kByteOrderMark.size()) : text;
  }

  // Counts records and fields and checks every cell, so that nothing is written of a file that
  // cannot be read to its end.
  void Survey() {
    CsvReader reader(Content(), options_.delimiter);
    std::vector<std::string> cells;
    std::int64_t count = 0;
    std::size_t fields = 0;
    while (reader.Next(cells)) {
      if (IsBlank(cells) && fields > 1) continue;
      fields = std::max(fields, cells.size());
      CheckEncoding(cells, reader.line());
      if (count++ == 0 && options_.header) TakeNames(cells);
    }
    if (fields > std::numeric_limits<std::int16_t>::max())
      throw Failure(file_ + ": too many fields");
    if (count > std::numeric_limits<std::int32_t>::max())
      throw Failure(file_ + ": too many records");
    names_.resize(fields);
    records_ = static_cast<std::int32_t>(options_.header && count > 0 ? count - 1 : count);
  }

  // A blank line is a record only where a record has a single field.
  static bool IsBlank(const std::vector<std::string>& cells) {
    return cells.size() == 1 && cells[0].empty();
  }

  void CheckEncoding(const std::vector<std::string>& cells, std::size_t line) const {
    const auto valid = [this](const std::string& cell) {
      return Decode(cell, options_.encoding).has_value();
    };
    if (std::ranges::all_of(cells, valid)) return;
    throw Failure(file_ + ": line " + std::to_string(line) +
                  " is not valid UTF-8; --encoding names another encoding");
  }

  void TakeNames(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) names_.push_back(*Decode(cell, options_.encoding));
  }

  bool NextRecord() {
    do {
      if (!reader_.Next(cells_)) return false;
    } while (IsBlank(cells_) && names_.size() > 1);
    return true;
  }

  std::string file_;
  TextImport options_;
  std::string text_;
  CsvReader reader_;
  std::vector<std::wstring> names_;
  std::int32_t records_ = 0;
  std::vector<std::string> cells_;
};

class TableSource final : public ImportSource {
 public:
  explicit TableSource(const std::wstring& path) : table_(path), records_(table_.Records()) {
    const std::int16_t fields = table_.Fields();
    for (int field = 1; field <= fields; ++field) {
      names_.push_back(table_.FieldName(static_cast<std::int16_t>(field)));
    }
  }

  const std::vector<std::wstring>& names() const override { return names_; }
  std::int32_t records() const override { return records_; }

  void NextRows(std::vector<ImportRow>& rows) override {
    const auto left = static_cast<std::size_t>(std::max(records_ - read_, 0));
    rows.resize(std::min(kBlockRows, left));
    for (ImportRow& row : rows) {
      ++read_;
      row.resize(names_.size());
      for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = table_.Cell(read_, static_cast<std::int16_t>(i + 1)).text;
      }
    }
  }

 private:
  Matrix table_;
  std::int32_t records_;
  std::int32_t read_ = 0;
  std::vector<std::wstring> names_;
};

}  // namespace

std::unique_ptr<ImportSource> OpenTextSource(const std::string& file, const TextImport& options) {
  return std::make_unique<TextSource>(file, options);
}

std::unique_ptr<ImportSource> OpenTableSource(const std::wstring& path) {
  return std::make_unique<TableSource>(path);
}

}  // namespace orv::cli
