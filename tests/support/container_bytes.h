// A container file's bytes, read without the engine.
#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orv::test {

/// An integer of a file: where it stands and how many bytes it has.
struct Word {
  std::int64_t position = 0;
  int width = 0;
  friend auto operator<=>(const Word&, const Word&) = default;
};

/// The bytes of a container file with its structures found by their positions, which count from 1.
/// It is written from the description of the format alone and shares nothing with the engine. Wild
/// positions throw std::out_of_range.
class ContainerBytes {
 public:
  explicit ContainerBytes(std::string bytes) : bytes_(std::move(bytes)) {}

  /// Takes note in `reads` of every integer that is read from now on. The set outlives the object.
  void RecordReads(std::set<Word>& reads) { reads_ = &reads; }

  const std::string& bytes() const { return bytes_; }
  std::int64_t size() const { return static_cast<std::int64_t>(bytes_.size()); }

  std::int64_t Byte(std::int64_t position) const { return Integer(position, 1, false); }
  std::int64_t Int16(std::int64_t position) const { return Integer(position, 2, true); }
  std::int64_t Int32(std::int64_t position) const { return Integer(position, 4, true); }
  void PutByte(std::int64_t position, std::int64_t value) { Put(position, 1, value); }
  void PutInt16(std::int64_t position, std::int64_t value) { Put(position, 2, value); }
  void PutInt32(std::int64_t position, std::int64_t value) { Put(position, 4, value); }
  /// Appends bytes and returns the position of the first.
  std::int64_t Append(std::string_view bytes);

  std::int64_t Root() const { return Int32(4); }
  std::int64_t FieldTable(std::int64_t matrix) const { return Int32(matrix + 12); }
  std::int64_t Records(std::int64_t matrix) const { return Int32(FieldTable(matrix)); }
  std::int64_t Fields(std::int64_t matrix) const { return Int16(FieldTable(matrix) + 4); }
  std::int64_t Descriptor(std::int64_t matrix, std::int64_t f) const;
  /// Position of entry k of a chain array with entries of w bytes; 0 when there is none.
  std::int64_t Entry(std::int64_t start, std::int64_t k, std::int64_t w) const;
  /// Position of record r's cell in a free field, 0 for an empty one.
  std::int64_t Cell(std::int64_t matrix, std::int64_t r, std::int64_t f) const;

  /// Gives a field without data the fixed style.
  void MakeFixed(std::int64_t matrix, std::int64_t f, int cellSize, int dataType);
  /// Gives a field the dictionary style with an index of the given width: one entry a record, all
  /// 0.
  void MakeDictionary(std::int64_t matrix, std::int64_t f, int width);

 private:
  std::int64_t Integer(std::int64_t position, int width, bool isSigned) const;
  void Put(std::int64_t position, int width, std::int64_t value);

  std::string bytes_;
  std::set<Word>* reads_ = nullptr;
};

}  // namespace orv::test
