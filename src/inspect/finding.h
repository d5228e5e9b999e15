// What an inspection finds wrong with a file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv::inspect {

/// The kinds of damage.
enum class Damage {
  kFileHeader,    ///< the fixed bytes at the file's beginning
  kRootPointer,   ///< the root matrix cannot stand where the header says
  kMatrixHeader,  ///< the fixed words of a matrix header or a descriptor
  kOutside,       ///< a pointer that leads outside the file
  kCut,           ///< a structure that the file's end cuts off
  kLoop,          ///< a chain that comes back to itself
  kShared,        ///< two pointers to one structure
  kOverlap,       ///< two structures that share bytes
  kLength,        ///< a text length that is negative or greater than the file
  kCount,         ///< a count that is negative or does not agree with what there is
  kNoDescriptor,  ///< a field without its descriptor
  kStyle,         ///< a style or data type code that no reader knows
  kCellSize,      ///< a cell size that the style cannot have
  kCellCode,      ///< a code that no cell, or no matrix, can have
  kIndexBlock,    ///< a dictionary index that does not lie inside the file
  kIndex,         ///< an index for a value that the dictionary does not have
  kNoDictionary,  ///< a dictionary field without its dictionary
  kTableHeader,   ///< the header of a dBASE III table
  kTableField,    ///< a field descriptor of a dBASE III table
  kTableRecords,  ///< the records of a dBASE III table
};

/// The kind as one word for programs: "outside".
std::string_view DamageName(Damage damage);
/// The kind in words: "pointer outside the file".
std::string_view DamageWords(Damage damage);

/// One thing that is wrong.
struct Finding {
  static constexpr std::int64_t kNoRecord = -1;

  Damage damage = Damage::kFileHeader;
  std::string matrix;               ///< canonical steps, "/" for the top; empty for the file itself
  std::int32_t field = 0;           ///< 0 where no field is concerned
  std::int64_t record = kNoRecord;  ///< 0 is the field's name
  std::int64_t position = 0;        ///< of the bytes that are wrong
  std::string what;                 ///< what is wrong, a sentence without its full stop
  std::string readable;             ///< what readers still get, likewise
};

/// Findings in the order in which they were met. A file can be wrong in more places than anybody
/// reads: beyond a limit they are only counted.
class FindingList {
 public:
  static constexpr std::size_t kGreatestListed = 10000;

  /// Adds a finding; false when it was only counted.
  bool Add(Finding finding);

  bool empty() const { return listed_.empty(); }
  const std::vector<Finding>& listed() const { return listed_; }
  std::vector<Finding>& listed() { return listed_; }
  std::int64_t unlisted() const { return unlisted_; }

 private:
  std::vector<Finding> listed_;
  std::int64_t unlisted_ = 0;
};

}  // namespace orv::inspect
