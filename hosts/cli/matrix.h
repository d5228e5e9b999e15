// One matrix, table or view, reached by its path through the automation object.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "orv/engine.h"

namespace orv::cli {

enum class FileKind { kUnknown, kContainer, kDbase };

struct CellText {
  std::wstring text;
  bool isMatrix = false;  ///< the cell holds a matrix; the text is its title
};

/// How a field is stored; the members have the meaning of the parameters of `GetFldStyle`.
struct FieldStyle {
  std::int16_t freeSize = 0;
  std::int16_t cellSize = 0;
  bool fixedType = false;
  bool unique = false;
  std::int16_t dataType = 0;
};

inline constexpr std::int16_t kFreeStyle = 0;
inline constexpr std::int16_t kFixedStyle = 1;
inline constexpr std::int16_t kCompressedStyle = 2;
inline constexpr std::int16_t kDictionaryStyle = 11;

/// Calls the engine's members on one path. Every member function throws `Failure`, naming path,
/// error code and meaning, when the engine reports an error.
class Matrix {
 public:
  explicit Matrix(std::wstring path) : path_(std::move(path)) {}

  const std::wstring& path() const { return path_; }

  /// The kind of the file; a path that does not resolve is a `Failure`.
  FileKind Kind();
  /// Whether the path leads to a matrix, a table or a view. Leaves no error behind.
  bool Exists();

  std::wstring Title();
  void SetTitle(std::wstring title);
  std::int32_t Records();
  std::int16_t Fields();

  CellText Cell(std::int32_t record, std::int16_t field, bool formula = false);
  /// The type number of a cell, whatever its length form; 0 where the record has no cell.
  std::int16_t TypeNumber(std::int32_t record, std::int16_t field);
  /// Writes a cell; record 0 is the field's name. In a dBASE III table the text is stored in code
  /// page 866, which is what reading such a table expects.
  void SetCell(std::int32_t record, std::int16_t field, std::wstring text);
  std::wstring FieldName(std::int16_t field) { return Cell(0, field).text; }
  /// The number of a field given by number or by name, letter case ignored. Throws `BadUsage` when
  /// there is no such field.
  std::int16_t FieldNumber(std::string_view numberOrName);

  void AddFields(std::int16_t count, std::int16_t at);
  void DeleteField(std::int16_t field);
  void AddRecords(std::int32_t count, std::int32_t at);
  void PutMatrix(std::int32_t record, std::int16_t field, std::wstring title);

  FieldStyle Style(std::int16_t field);
  void SetStyle(std::int16_t field, const FieldStyle& style);
  /// The width of a field of a dBASE III table.
  std::int16_t DbaseWidth(std::int16_t field);

  /// The engine's error code after the last call.
  std::int16_t ErrorCode();
  /// Throws when the last call left an error code.
  void Check();
  /// Throws with the sentence for that code.
  [[noreturn]] void Fail(std::int16_t code) const;

  Engine& engine() { return engine_; }

 private:
  bool IsDbase();

  Engine engine_;
  std::wstring path_;
  std::optional<bool> isDbase_;  // asked for once: a file does not change its kind
};

}  // namespace orv::cli
