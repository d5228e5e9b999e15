// What the storage rooms need of the rooms above them. The upper rooms implement these ports and
// the engine wires them; no include points upwards.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace orv::storage {

/// The filtered views. A view is known by its key: the canonical path of the matrix, "/", the
/// condition.
class FilterPort {
 public:
  virtual ~FilterPort() = default;
  /// The slot, 1 to 8, of the view with exactly this key, or -1.
  virtual std::int16_t GetFilterID(const std::wstring& key) const = 0;
  /// Builds the view. Whether it came about shows in `GetFilterID` and the error code.
  virtual void CreateFilter(const std::wstring& key, const std::wstring& condition) = 0;
  /// The underlying record of visible record `r`, or -1.
  virtual std::int32_t GetFilterValue(std::int16_t slot, std::int32_t r) const = 0;
  /// The underlying field of visible field `f`; 0 when the view has no such field.
  virtual std::int16_t GetCashFld(std::int16_t slot, std::int32_t f) const = 0;
  virtual std::int32_t RecordCount(std::int16_t slot) const = 0;
  virtual std::int16_t FieldCount(std::int16_t slot) const = 0;
  /// Frees all slots.
  virtual void EraseCash() = 0;
  /// Frees the slots of views into this file, whose name stands without quotes.
  virtual void DropFile(const std::wstring& fileName) = 0;
};

/// Evaluates the subscripts of a path that are expressions.
class SubscriptPort {
 public:
  virtual ~SubscriptPort() = default;
  /// The number that the expression yields in the context of the path read so far.
  virtual double ReadSubscript(const std::wstring& expression, const std::wstring& pathSoFar) = 0;
};

/// Evaluates the formula of a cell's type.
class FormulaPort {
 public:
  virtual ~FormulaPort() = default;
  /// What the formula of cell type `typeNumber` gives for this cell, or `text` when it has none.
  virtual std::string EvaluateFormula(const std::wstring& path, std::int32_t record,
                                      std::int16_t field, std::int16_t typeNumber,
                                      std::string_view text) = 0;
};

/// The cells of dBASE III tables. Numbers count from 1; nothing is cached.
class DbasePort {
 public:
  virtual ~DbasePort() = default;
  /// The number in the header, whatever the file holds.
  virtual std::int32_t RecordCount(platform::File& file) const = 0;
  /// The records that loops over the table go through: the header's number, cut to a thousand or to
  /// the records that the file has bytes for.
  virtual std::int32_t ReadableRecordCount(platform::File& file) const = 0;
  virtual std::int16_t FieldCount(platform::File& file) const = 0;
  virtual std::int16_t FieldWidth(platform::File& file, std::int16_t f) const = 0;
  /// The field's name in code page 1251.
  virtual std::string FieldName(platform::File& file, std::int16_t f) const = 0;
  /// The cell's text in code page 1251, good until the next call or write to the file; what the
  /// file does not have is missing.
  virtual std::string_view ReadCell(platform::File& file, std::int32_t r, std::int16_t f) const = 0;
  /// Writes the text in place, cut or padded to the field's width. Raises 70 for a record below 1
  /// and 9 for a cell outside the table, with nothing written.
  virtual void WriteCell(platform::File& file, std::int32_t r, std::int16_t f,
                         std::string_view text) = 0;
};

/// Converts a field to another storage style.
class StylePort {
 public:
  virtual ~StylePort() = default;
  /// Opens the conversion dialog for the matrix path, the field number as text and the
  /// nine-character request.
  virtual void ConvertField(const std::wstring& path, const std::string& field,
                            const std::string& request) = 0;
};

/// The ports of one engine; nullptr where nothing is wired.
struct Ports {
  FilterPort* filters = nullptr;
  SubscriptPort* subscripts = nullptr;
  FormulaPort* formulas = nullptr;
  DbasePort* dbase = nullptr;
  StylePort* styles = nullptr;
};

}  // namespace orv::storage
