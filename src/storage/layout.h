// The byte layout of container files and dBASE III marks: offsets from a structure's own position.
//
// These numbers are stored in files that live for decades; none of them may ever change.
#pragma once

#include <cstdint>
#include <string_view>

namespace orv::storage::layout {

/// A stored pointer is a 1-based byte position; 0 means none.
using Position = std::int32_t;

/// Stands for the matrix position of a dBASE III table, which has no matrix tree.
inline constexpr Position kDbaseTable = -3;

namespace file {
inline constexpr std::uint8_t kFirstByte = 0x01;
/// The bytes 1, 0, 1, which every writer begins with; readers rely on the first one only.
inline constexpr std::string_view kBeginning("\x01\x00\x01", 3);
inline constexpr std::int64_t kRootPointer =
    4;  ///< position of the int32 that names the root matrix
inline constexpr std::int64_t kMagicPosition = 8;
inline constexpr std::string_view kMagic = "Pellox";
/// The version and 31 bytes of credit; never read back.
inline constexpr std::string_view kBanner = " v1.0 table engine, tables in tables";
static_assert(kBanner.size() == 36);
/// The root matrix stands this far behind the length of the header text: two bytes stay free
/// between them, which every writer of the format keeps.
inline constexpr std::int32_t kRootGap = 3;
inline constexpr std::uint8_t kDbaseFirstByte = 0x03;
inline constexpr std::uint8_t kDbaseDigit = '0';
}  // namespace file

namespace matrix {
inline constexpr int kCode = 0;          ///< int16, negative
inline constexpr int kTitle = 2;         ///< int32, chained text with 4-byte lengths
inline constexpr int kHeaderWord = 6;    ///< int16, 1
inline constexpr int kProperties = 8;    ///< int32, property matrix
inline constexpr int kFieldTable = 12;   ///< int32, field table block
inline constexpr int kHeaderBytes = 16;  ///< the title's first piece follows at creation
inline constexpr std::int16_t kPlainCode = -1;
inline constexpr std::int16_t kHeaderWordValue = 1;
}  // namespace matrix

namespace field_table {
inline constexpr int kRecords = 0;  ///< int32
inline constexpr int kFields = 4;   ///< int16
inline constexpr int kChain = 6;    ///< chain array of descriptor positions
}  // namespace field_table

namespace descriptor {
inline constexpr int kData = 0;        ///< int32, start of the data chain array
inline constexpr int kReserved = 4;    ///< int32, 0
inline constexpr int kStyle = 8;       ///< byte
inline constexpr int kCellSize = 9;    ///< int16 (the dictionary conversion writes an int32)
inline constexpr int kDataType = 11;   ///< int16
inline constexpr int kFieldCode = 13;  ///< int16, cell code of the field itself
inline constexpr int kTitleCell = 15;  ///< int16 cell code, then the name as a chained text
inline constexpr int kBytes = 22;      ///< of a new descriptor
}  // namespace descriptor

namespace cell {
inline constexpr int kCode = 0;  ///< int16
inline constexpr int kText = 2;  ///< chained text, or for a matrix the title pointer
/// Added to the type number when the text has 4-byte lengths.
inline constexpr std::int16_t kLongForm = 16380;
inline constexpr std::int16_t kPlainType = 1;
inline constexpr std::int16_t kPlainLong = kLongForm + kPlainType;
/// A text of this length or more does not fit the short form's first piece.
inline constexpr std::size_t kShortTextLimit = 256;
}  // namespace cell

inline constexpr int kPointerBytes = 4;
inline constexpr int kChainHeadBytes = 4;  ///< the entry count in front of a chain block
inline constexpr int kShortLengthBytes = 1;
inline constexpr int kLongLengthBytes = 4;

}  // namespace orv::storage::layout
