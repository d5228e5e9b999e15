// A storage of a few tables in memory, for tests of the command language.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "command/ports.h"
#include "platform/run_time_error.h"

namespace orv::command::test {

struct Table {
  /// The type name of each field; empty for cells without the property "type".
  std::vector<std::string> types;
  std::vector<std::vector<std::string>> records;
};

/// Record 0 of field f reads "name<f>"; a record beyond the table raises 9; record -1 is
/// "<Error=20>".
class FakeServices : public Services {
 public:
  std::int32_t Records(const std::wstring& path) override {
    return static_cast<std::int32_t>(TableAt(path).records.size());
  }
  std::int32_t Fields(const std::wstring& path) override {
    return static_cast<std::int32_t>(TableAt(path).types.size());
  }
  void ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field, bool formula,
                std::string& text) override {
    ++reads;
    error.Clear();
    if (formula) {
      text = "formula of ";
      text += Cell(path, record, field);
    } else {
      text = Cell(path, record, field);
    }
  }
  std::string_view CellTypeName(const std::wstring& path, std::int32_t /*record*/,
                                std::int16_t field) override {
    const Table& table = TableAt(path);
    const auto index = static_cast<std::size_t>(field) - 1;
    return index < table.types.size() ? std::string_view(table.types[index]) : std::string_view();
  }
  std::int32_t FindFirst(const std::wstring& path, std::int16_t field,
                         std::string_view value) override {
    const Table& table = TableAt(path);
    const auto f = static_cast<std::size_t>(field) - 1;
    if (f >= table.types.size()) platform::Raise(platform::RunTimeError::kSubscript);
    for (std::size_t r = 0; r < table.records.size(); ++r) {
      if (table.records[r][f] == value) {
        return static_cast<std::int32_t>(r + 1);
      }
    }
    return -1;
  }
  storage::ErrorCode& Error() override { return error; }
  std::unique_ptr<Column> OpenColumn(const std::wstring& path, std::int16_t field) override {
    if (!givesColumns) return nullptr;
    return std::make_unique<FakeColumn>(*this, path, field);
  }

  std::string_view Cell(const std::wstring& path, std::int32_t record, std::int16_t field) {
    if (record == -1) {
      error.Set(storage::code::kRecordNumber);
      return "<Error=20>";
    }
    const Table& table = TableAt(path);
    if (record < 1) return names_[field] = "name" + std::to_string(field);
    const auto r = static_cast<std::size_t>(record) - 1;
    const auto f = static_cast<std::size_t>(field) - 1;
    if (r >= table.records.size() || f >= table.types.size()) {
      platform::Raise(platform::RunTimeError::kSubscript);
    }
    return table.records[r][f];
  }

  std::map<std::wstring, Table> tables;
  storage::ErrorCode error;
  int reads = 0;
  bool givesColumns = true;

 private:
  class FakeColumn : public Column {
   public:
    FakeColumn(FakeServices& services, std::wstring path, std::int16_t field)
        : services_(services), path_(std::move(path)), field_(field) {}
    std::string_view Text(std::int32_t record, std::string& room) override {
      ++services_.reads;
      // Short texts come through the room, long ones as they lie.
      const std::string_view text = services_.Cell(path_, record, field_);
      if (text.size() > 2) return text;
      room = text;
      return room;
    }
    std::string_view TypeName(std::int32_t record) override {
      return services_.CellTypeName(path_, record, field_);
    }

   private:
    FakeServices& services_;
    std::wstring path_;
    std::int16_t field_;
  };

  const Table& TableAt(const std::wstring& path) {
    const auto found = tables.find(path);
    if (found == tables.end()) platform::Raise(platform::RunTimeError::kFileNotFound);
    return found->second;
  }

  std::map<std::int16_t, std::string> names_;
};

}  // namespace orv::command::test
