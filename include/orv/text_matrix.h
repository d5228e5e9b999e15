// The host's two-dimensional array of texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace orv {

/// The inclusive range of numbers that one dimension of an array accepts; empty when high < low.
struct Bounds {
  std::int32_t low = 1;
  std::int32_t high = 0;

  std::size_t Count() const {
    return high < low ? 0 : static_cast<std::size_t>(std::int64_t{high} - low + 1);
  }
  bool Contains(std::int32_t number) const { return low <= number && number <= high; }
  friend bool operator==(const Bounds&, const Bounds&) = default;
};

/// An array of texts, fields by records, with the bounds that its host chose for both.
/// `ValueMatrix` stores the text of cell (record, field) in the element of these absolute numbers,
/// so a host reads records 5 to 9 into an array whose records run from 5 to 9. The array owns its
/// texts.
class TextMatrix {
 public:
  TextMatrix() = default;
  /// Makes all elements, empty.
  TextMatrix(Bounds fields, Bounds records)
      : fields_(fields), records_(records), texts_(fields.Count() * records.Count()) {}

  const Bounds& fields() const { return fields_; }
  const Bounds& records() const { return records_; }

  /// Numbers the records from `first` on, as many as before; the texts stay where they are. A host
  /// that reads a long matrix block by block uses one array, and its room, for all of them.
  void StartRecordsAt(std::int32_t first) {
    const std::int64_t last = std::int64_t{first} + records_.high - records_.low;
    if (records_.Count() > 0 && last <= std::numeric_limits<std::int32_t>::max()) {
      records_ = {first, static_cast<std::int32_t>(last)};
    }
  }

  bool Contains(std::int32_t field, std::int32_t record) const {
    return fields_.Contains(field) && records_.Contains(record);
  }
  /// The element of a field and a record that the array contains; the reference lives as long as
  /// the array.
  std::wstring& At(std::int32_t field, std::int32_t record) { return texts_[Index(field, record)]; }
  const std::wstring& At(std::int32_t field, std::int32_t record) const {
    return texts_[Index(field, record)];
  }

 private:
  std::size_t Index(std::int32_t field, std::int32_t record) const {
    return static_cast<std::size_t>(std::int64_t{field} - fields_.low) * records_.Count() +
           static_cast<std::size_t>(std::int64_t{record} - records_.low);
  }

  Bounds fields_;
  Bounds records_;
  std::vector<std::wstring> texts_;
};

}  // namespace orv
