// A walk over everything that is alive in a container file.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "inspect/claimed_bytes.h"
#include "inspect/structure.h"
#include "platform/file.h"

namespace orv::inspect {

/// Where the field of a dictionary stands, for the checks that follow a walk.
struct DictionaryField {
  Place place;
  std::int64_t matrix = 0;      ///< position
  std::int64_t descriptor = 0;  ///< position
  std::int64_t index = 0;       ///< position
  std::int64_t width = 0;
  std::int64_t records = 0;
};

/// Goes from the header, or from one matrix, through every structure that can be reached, matrix by
/// matrix, those of one level before those of the next. Nothing is trusted: every pointer, count
/// and length is checked against the file before it is followed, and bytes that belong to a
/// structure already are never walked again. So a walk ends, in time and memory bounded by the
/// file's size, whatever the file holds. Two walks over the same bytes meet the same structures in
/// the same order.
class ContainerWalk {
 public:
  ContainerWalk(platform::File& file, WalkObserver& observer) : file_(file), observer_(observer) {}

  void WalkFile();
  /// Walks what belongs to the matrix at `position`, which must lie inside the file; `steps` is its
  /// path.
  void WalkMatrix(std::int64_t position, const std::string& steps);

  /// The canonical steps of a matrix of this walk, "/" for the top. Of a very deep one the steps in
  /// the middle are left out.
  std::string PathOf(std::size_t matrix) const;
  /// Dictionary fields met, with an index inside the file.
  const std::vector<DictionaryField>& dictionaryFields() const { return dictionaryFields_; }
  /// Bytes that belong to a structure.
  std::int64_t liveBytes() const { return claimed_.count(); }

 private:
  struct Matrix {
    std::int64_t position = 0;
    std::size_t parent = 0;
    std::int32_t field = 0;  ///< of the parent's cell; 0 for a property matrix
    std::int32_t record = 0;
  };

  void CheckHeader();
  void Enter(const Matrix& matrix, const Place& from, std::int64_t slot);
  void VisitMatrix(std::size_t number);
  void CheckMatrixWords(const Place& place, std::int64_t position);
  void VisitProperties(std::size_t number);
  void VisitFieldTable(std::size_t number);
  void CheckCounts(const Place& place, std::int64_t table);
  void VisitDescriptorSlot(Place place, std::int64_t slot, std::int64_t fields,
                           std::int64_t records);
  void VisitDescriptor(const Place& place, std::int64_t slot, std::int64_t records);
  void VisitData(const Place& place, std::int64_t descriptor, std::int64_t records);
  void VisitPointers(const Place& place, std::int64_t descriptor, std::int64_t records);
  void VisitFixed(const Place& place, std::int64_t descriptor, std::int64_t records);
  void VisitIndex(const Place& place, std::int64_t descriptor, std::int64_t records);
  void VisitCell(const Place& place, std::int64_t slot);
  void WalkText(StructureKind kind, const Place& place, std::int64_t position, int lengthBytes,
                std::int64_t slot);
  /// Walks a chain array, calls `visit(number, position)` for each entry of each sound block, and
  /// returns the number of entries.
  template <typename Visit>
  std::int64_t WalkArray(StructureKind kind, const Place& place, std::int64_t start,
                         std::int64_t width, std::int64_t slot, Visit visit);
  void CheckSurplus(const Place& place, std::int64_t entries, std::int64_t records,
                    std::int64_t position);

  bool Take(const Structure& structure, std::int64_t slot);
  void ReportUnreachable(const Structure& structure, std::int64_t slot);
  void Report(Damage damage, const Place& place, std::int64_t position, std::string what,
              std::string readable);
  void CheckCode(const Place& place, std::int64_t position);

  platform::File& file_;
  WalkObserver& observer_;
  ClaimedBytes claimed_;
  std::string start_;            ///< steps of the first matrix
  std::deque<Matrix> matrices_;  ///< in the order of the walk; references stay good
  std::vector<DictionaryField> dictionaryFields_;
};

/// What readers still get of the chain or matrix around a structure that is not to be had.
std::string StillReadable(const Structure& structure);

}  // namespace orv::inspect
