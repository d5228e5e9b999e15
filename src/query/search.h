// The searches: the first record that holds a text, the records with the least and the greatest
// text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "query/text_pattern.h"
#include "storage/storage.h"

namespace orv::query {

/// What `MtxFindFirst` looks for. Numbers and letter case come back to the caller as the search
/// leaves them.
struct FindRequest {
  std::int32_t record = 1;  ///< where an unfiltered search starts; below 1 it starts at record 1
  std::int16_t field =
      0;  ///< 0: any field; becomes 1 after a match in any field of an unfiltered matrix
  std::string_view value;
  std::int16_t region = 0;     ///< only the matrix itself, 0, is searched
  bool inCell = false;         ///< the value may stand anywhere in the cell
  std::int16_t direction = 0;  ///< without effect: every search runs forward
  bool caseMatters = false;    ///< becomes true for a field of type "int"
};

/// The searches over one matrix. Every result is a record number; -1 when nothing was found, for
/// every failure (its code is left in the error code) and for dBASE III tables.
class Search {
 public:
  static constexpr std::int32_t kNotFound = -1;

  explicit Search(storage::Storage& storage) : storage_(storage) {}

  /// The first record that matches. In a view, records are counted within the view, the start is
  /// always its first record, and without `inCell` a text of another length than the value's ends
  /// the search.
  std::int32_t MtxFindFirst(const std::wstring& pth, FindRequest& request);

  /// The first record whose field holds exactly the value, letter case counting, from record 1 on.
  /// A view is searched, too, and records are counted within it then; in a dBASE III table nothing
  /// is found.
  std::int32_t FindEqual(const std::wstring& pth, std::int16_t field, std::string_view value);

  /// The record with the least text, by character codes. -1 when that is record 1 with a cell.
  /// Error code 5 for a matrix without records. A view is searched as the matrix it shows.
  std::int32_t MtxFindMin(const std::wstring& pth, std::int16_t col);
  /// The first record with the greatest text; -1 when all are empty. Otherwise like the least.
  std::int32_t MtxFindMax(const std::wstring& pth, std::int16_t col);
  /// The first record with the greatest number; -1 when none is above 0.
  std::int32_t FindMaxNumber(const std::wstring& pth, std::int16_t col);

 private:
  std::int32_t FindFirst(const std::wstring& pth, FindRequest& request);
  bool IsInteger(const storage::Location& at, std::int16_t field);
  std::int32_t FindInField(const storage::Location& at, const FindRequest& request,
                           const TextPattern& pattern);
  std::int32_t FindInView(const storage::Location& at, std::int16_t field,
                          const TextPattern& pattern);
  template <typename Find>
  std::int32_t FindExtreme(const std::wstring& pth, std::int16_t col, Find find);
  std::int32_t FindInAnyField(const storage::Location& at, FindRequest& request,
                              const TextPattern& pattern);

  storage::Storage& storage_;
};

}  // namespace orv::query
