#include "inspect/container_walk.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "inspect/matrix_search.h"
#include "inspect/sound_code.h"
#include "storage/cell_code.h"
#include "storage/chained_text.h"
#include "storage/dictionary.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/value_types.h"

namespace orv::inspect {

namespace layout = storage::layout;
using storage::DictionaryIndex;

namespace {

constexpr std::int64_t kFileHeaderBytes = 51;
constexpr std::int64_t kDescriptorBytes = layout::descriptor::kTitleCell + 2;
/// Steps of a path that are written out.
constexpr std::size_t kGreatestSteps = 64;

std::string Number(std::int64_t number) { return std::to_string(number); }

bool IsBlock(StructureKind kind) {
  return kind == StructureKind::kDescriptorBlock || kind == StructureKind::kPointerBlock ||
         kind == StructureKind::kFixedBlock;
}

bool IsPiece(StructureKind kind) {
  return kind == StructureKind::kTitlePiece || kind == StructureKind::kNamePiece ||
         kind == StructureKind::kTextPiece;
}

std::string UpTo(std::string_view what, std::int64_t last) {
  return last == 1 ? std::string(what) + " 1"
                   : std::string(what) + "s 1 to " + std::to_string(last);
}

}  // namespace

std::string StillReadable(const Structure& structure) {
  if (IsPiece(structure.kind)) {
    return structure.first > 1 ? "the " + std::string(KindWords(structure.kind)) + " up to there"
                               : "everything but the " + std::string(KindWords(structure.kind));
  }
  if (IsBlock(structure.kind)) {
    const bool fields = structure.kind == StructureKind::kDescriptorBlock;
    if (structure.first > 1) return UpTo(fields ? "field" : "record", structure.first - 1);
    return fields ? "the matrix's title" : "the other fields";
  }
  switch (structure.kind) {
    case StructureKind::kMatrix:
      return "the matrix around it";
    case StructureKind::kFieldTable:
      return "the matrix's title";
    case StructureKind::kDescriptor:
    case StructureKind::kIndex:
      return "the other fields";
    default:
      return "the other cells";
  }
}

void ContainerWalk::WalkFile() {
  CheckHeader();
  const std::int64_t root = file_.Int32At(layout::file::kRootPointer);
  if (!CanBeMatrix(file_, root)) {
    Report(Damage::kRootPointer, {}, layout::file::kRootPointer,
           "the root matrix cannot stand at " + Number(root), "nothing");
    return;
  }
  WalkMatrix(root, "");
}

void ContainerWalk::WalkMatrix(std::int64_t position, const std::string& steps) {
  start_ = steps;
  Enter({position, 0, 0, 0}, {}, layout::file::kRootPointer);
  for (std::size_t i = 0; i < matrices_.size(); ++i) VisitMatrix(i);
}

std::string ContainerWalk::PathOf(std::size_t matrix) const {
  if (matrices_.empty()) return {};
  std::vector<std::string> steps;
  for (std::size_t i = matrix; i != 0 && steps.size() < kGreatestSteps; i = matrices_[i].parent) {
    const Matrix& at = matrices_[i];
    steps.push_back(at.field == 0 ? "/#" : "/[" + Number(at.record) + "," + Number(at.field) + "]");
    if (steps.size() == kGreatestSteps) steps.emplace_back("/...");
  }
  std::string path = std::accumulate(steps.rbegin(), steps.rend(), start_);
  return path.empty() ? "/" : path;
}

void ContainerWalk::CheckHeader() {
  Take({StructureKind::kFileHeader, {}, 1, kFileHeaderBytes}, 1);
  using namespace layout::file;
  if (file_.View(1, std::ssize(kBeginning)) != kBeginning) {
    Report(Damage::kFileHeader, {}, 1, "the file does not begin with the bytes 1, 0, 1",
           file_.ByteAt(1) == kFirstByte ? "everything" : "nothing, the file is not recognised");
  }
  if (file_.View(kMagicPosition, std::ssize(kMagic)) != kMagic) {
    Report(Damage::kFileHeader, {}, kMagicPosition, "the magic word is missing",
           "nothing, the file is not recognised");
  }
}

/// Takes a matrix into the walk. `from` is what holds the pointer to it.
void ContainerWalk::Enter(const Matrix& matrix, const Place& from, std::int64_t slot) {
  Structure header{StructureKind::kMatrix, from, matrix.position, layout::matrix::kHeaderBytes};
  if (!file_.Contains(header.position, header.bytes)) return ReportUnreachable(header, slot);
  if (const std::int64_t at = claimed_.Claim(header.position, header.bytes); at != 0) {
    return observer_.OnConflict({header, at, slot});
  }
  matrices_.push_back(matrix);
  header.place = {matrices_.size() - 1, 0, Finding::kNoRecord};
  header.count = matrix.field == 0 ? 0 : 1;
  observer_.OnStructure(header);
}

void ContainerWalk::VisitMatrix(std::size_t number) {
  const std::int64_t position = matrices_[number].position;
  const Place place{number, 0, Finding::kNoRecord};
  CheckMatrixWords(place, position);
  const std::int64_t slot = position + layout::matrix::kTitle;
  const std::int64_t title = file_.Int32At(slot);
  WalkText(StructureKind::kTitlePiece, place, title, layout::kLongLengthBytes, slot);
  VisitProperties(number);
  VisitFieldTable(number);
}

void ContainerWalk::CheckMatrixWords(const Place& place, std::int64_t position) {
  const std::int64_t code = file_.Int16At(position);
  if (code >= 0) {
    Report(Damage::kCellCode, place, position,
           "the matrix's code is " + Number(code) + ", not negative", "the matrix by its path");
  } else {
    CheckCode(place, position);
  }
  const std::int64_t word = file_.Int16At(position + layout::matrix::kHeaderWord);
  if (word != layout::matrix::kHeaderWordValue) {
    Report(Damage::kMatrixHeader, place, position + layout::matrix::kHeaderWord,
           "the header's word at offset 6 is " + Number(word) + ", not 1", "everything");
  }
}

void ContainerWalk::VisitProperties(std::size_t number) {
  const std::int64_t slot = matrices_[number].position + layout::matrix::kProperties;
  const std::int64_t properties = file_.Int32At(slot);
  if (properties != 0) {
    Enter({properties, number, 0, 0}, {number, 0, Finding::kNoRecord}, slot);
  }
}

void ContainerWalk::VisitFieldTable(std::size_t number) {
  const Place place{number, 0, Finding::kNoRecord};
  const std::int64_t slot = matrices_[number].position + layout::matrix::kFieldTable;
  const std::int64_t table = file_.Int32At(slot);
  if (table == 0) return;
  if (!Take({StructureKind::kFieldTable, place, table, layout::field_table::kChain}, slot)) return;
  CheckCounts(place, table);
  const std::int64_t records = file_.Int32At(table + layout::field_table::kRecords);
  const std::int64_t fields = file_.Int16At(table + layout::field_table::kFields);
  const std::int64_t chain = table + layout::field_table::kChain;
  const std::int64_t slots = WalkArray(StructureKind::kDescriptorBlock, place, chain,
                                       layout::kPointerBytes, chain, [&](auto f, auto at) {
                                         Place field = place;
                                         field.field = static_cast<std::int32_t>(f);
                                         VisitDescriptorSlot(field, at, fields, records);
                                       });
  if (fields > slots) {
    Report(Damage::kCount, place, table + layout::field_table::kFields,
           Number(fields) + " fields are counted, the descriptor array reaches to " + Number(slots),
           slots > 0 ? UpTo("field", slots) : "the matrix's title");
  }
}

void ContainerWalk::CheckCounts(const Place& place, std::int64_t table) {
  const std::int64_t records = file_.Int32At(table + layout::field_table::kRecords);
  const auto matrix = static_cast<std::int32_t>(matrices_[place.matrix].position);
  if (records < 0 || records != storage::ReadableRecordCount(file_, matrix)) {
    Report(Damage::kCount, place, table,
           "the record count is " + Number(records) + ", which the file cannot hold",
           records < 0 ? "the title and the fields' names" : "cells one by one");
  }
  const std::int64_t fields = file_.Int16At(table + layout::field_table::kFields);
  if (fields < 0) {
    Report(Damage::kCount, place, table + layout::field_table::kFields,
           "the field count is " + Number(fields), "cells one by one");
  }
}

void ContainerWalk::VisitDescriptorSlot(Place place, std::int64_t slot, std::int64_t fields,
                                        std::int64_t records) {
  const bool counted = place.field <= fields;
  const bool present = file_.Int32At(slot) != 0;
  if (counted && !present) {
    return Report(Damage::kNoDescriptor, place, slot, "the field's descriptor pointer is 0",
                  "the other fields");
  }
  if (!present) return;
  if (!counted) {
    return Report(Damage::kCount, place, slot,
                  "there is a descriptor behind the last of " + Number(fields) + " fields",
                  "the fields that are counted");
  }
  VisitDescriptor(place, slot, records);
}

void ContainerWalk::VisitDescriptor(const Place& place, std::int64_t slot, std::int64_t records) {
  const std::int64_t descriptor = file_.Int32At(slot);
  if (!Take({StructureKind::kDescriptor, place, descriptor, kDescriptorBytes}, slot)) return;
  namespace at = layout::descriptor;
  if (const std::int64_t word = file_.Int32At(descriptor + at::kReserved); word != 0) {
    Report(Damage::kMatrixHeader, place, descriptor + at::kReserved,
           "the descriptor's bytes at offset 4 are " + Number(word) + ", not 0", "everything");
  }
  if (const int type = file_.Int16At(descriptor + at::kDataType);
      type < storage::type::kVariant || type > storage::type::kFile) {
    Report(Damage::kStyle, place, descriptor + at::kDataType,
           "the data type code is " + Number(type), "the cells as texts");
  }
  CheckCode(place, descriptor + at::kFieldCode);
  const std::int64_t title = descriptor + at::kTitleCell;
  CheckCode(place, title);
  if (file_.Int16At(title) < 0) {
    Report(Damage::kCellCode, place, title, "the code of the field's name is a matrix's",
           "everything but the name");
  }
  WalkText(StructureKind::kNamePiece, {place.matrix, place.field, 0}, title + layout::cell::kText,
           storage::LengthBytes(file_.Int16At(title)), title);
  VisitData(place, descriptor, records);
}

void ContainerWalk::VisitData(const Place& place, std::int64_t descriptor, std::int64_t records) {
  namespace style_code = storage::style_code;
  const int style = file_.ByteAt(descriptor + layout::descriptor::kStyle);
  const bool hasData = file_.Int32At(descriptor) != 0;
  if (style >= style_code::kFree && style < style_code::kFixed) {
    if (hasData) VisitPointers(place, descriptor, records);
  } else if (style == style_code::kFixed || style == style_code::kFixedUnique) {
    VisitFixed(place, descriptor, records);
  } else if (style == style_code::kDictionary) {
    VisitIndex(place, descriptor, records);
  } else if (style != style_code::kCompressed || hasData) {
    Report(Damage::kStyle, place, descriptor + layout::descriptor::kStyle,
           "the style code is " + Number(style) +
               (style == style_code::kCompressed ? ", whose cells nobody can read" : ""),
           "the field's name");
  }
}

void ContainerWalk::VisitPointers(const Place& place, std::int64_t descriptor,
                                  std::int64_t records) {
  const std::int64_t entries =
      WalkArray(StructureKind::kPointerBlock, place, file_.Int32At(descriptor),
                layout::kPointerBytes, descriptor, [&](std::int64_t r, std::int64_t slot) {
                  if (file_.Int32At(slot) != 0) VisitCell({place.matrix, place.field, r}, slot);
                });
  CheckSurplus(place, entries, records, descriptor);
}

void ContainerWalk::VisitFixed(const Place& place, std::int64_t descriptor, std::int64_t records) {
  const std::int64_t at = descriptor + layout::descriptor::kCellSize;
  const std::int64_t width = file_.Int16At(at);
  if (width < 1) {
    return Report(Damage::kCellSize, place, at, "the cell size is " + Number(width),
                  "the field's name");
  }
  if (file_.Int32At(descriptor) == 0) return;
  const std::int64_t entries =
      WalkArray(StructureKind::kFixedBlock, place, file_.Int32At(descriptor), width, descriptor,
                [](std::int64_t, std::int64_t) {});
  CheckSurplus(place, entries, records, descriptor);
}

/// Insertion gives no field more entries than there are records.
void ContainerWalk::CheckSurplus(const Place& place, std::int64_t entries, std::int64_t records,
                                 std::int64_t position) {
  if (entries <= records) return;
  Report(
      Damage::kCount, place, position,
      "the field has data for " + Number(entries) + " records, " + Number(records) + " are counted",
      "the records that are counted");
}

void ContainerWalk::VisitIndex(const Place& place, std::int64_t descriptor, std::int64_t records) {
  const std::int64_t at = descriptor + layout::descriptor::kCellSize;
  const std::int64_t width = file_.Int16At(at);
  if (!DictionaryIndex::IsWidth(static_cast<std::int32_t>(width))) {
    return Report(Damage::kCellSize, place, at,
                  "the width of the index entries is " + Number(width), "the field's name");
  }
  const std::int64_t index = file_.Int32At(descriptor);
  if (index == 0) return;
  const std::int64_t count = std::max<std::int64_t>(records, 0);
  const Structure block{StructureKind::kIndex,
                        place,
                        index,
                        DictionaryIndex::kHeadBytes + width * count,
                        width,
                        count};
  if (!Take(block, descriptor)) return;
  dictionaryFields_.push_back(
      {place, matrices_[place.matrix].position, descriptor, index, width, count});
}

void ContainerWalk::VisitCell(const Place& place, std::int64_t slot) {
  const std::int64_t cell = file_.Int32At(slot);
  const Structure code{StructureKind::kCell, place, cell, layout::cell::kText};
  if (!file_.Contains(cell, code.bytes)) return ReportUnreachable(code, slot);
  if (file_.Int16At(cell) < 0) {
    const auto record = static_cast<std::int32_t>(place.record);
    return Enter({cell, place.matrix, place.field, record}, place, slot);
  }
  if (!Take(code, slot)) return;
  CheckCode(place, cell);
  WalkText(StructureKind::kTextPiece, place, cell + layout::cell::kText,
           storage::LengthBytes(file_.Int16At(cell)), slot);
}

void ContainerWalk::WalkText(StructureKind kind, const Place& place, std::int64_t position,
                             int lengthBytes, std::int64_t slot) {
  for (std::int64_t number = 1;; ++number) {
    const std::int64_t length = storage::PieceLength(file_, position, lengthBytes);
    const Structure piece{
        kind,        place,  position, lengthBytes + length + layout::kPointerBytes,
        lengthBytes, length, number};
    const bool there = file_.Contains(position, lengthBytes);
    if (there && (length < 0 || !file_.Contains(position, piece.bytes))) {
      const std::int64_t room = file_.Length() + 1 - position - lengthBytes;
      return Report(Damage::kLength, place, position,
                    "piece " + Number(number) + " of the " + std::string(KindWords(kind)) +
                        " claims " + Number(length) + " bytes, the file has " + Number(room),
                    StillReadable(piece));
    }
    if (!Take(piece, slot)) return;
    slot = position + lengthBytes + length;
    position = file_.Int32At(slot);
    if (position == 0) return;
  }
}

template <typename Visit>
std::int64_t ContainerWalk::WalkArray(StructureKind kind, const Place& place, std::int64_t start,
                                      std::int64_t width, std::int64_t slot, Visit visit) {
  std::int64_t entries = 0;
  for (std::int64_t block = start; block != 0;) {
    const std::int64_t count = file_.Int32At(block);
    const Structure structure{
        kind,  place, block,      layout::kChainHeadBytes + count * width + layout::kPointerBytes,
        width, count, entries + 1};
    if (count < 0 && file_.Contains(block, layout::kChainHeadBytes)) {
      Report(Damage::kCount, place, block,
             "a block of the " + std::string(KindWords(kind)) + " counts " + Number(count) +
                 " entries",
             StillReadable(structure));
      break;
    }
    if (!Take(structure, slot)) break;
    for (std::int64_t i = 0; i < count; ++i) {
      visit(entries + i + 1, block + layout::kChainHeadBytes + i * width);
    }
    entries += count;
    slot = block + layout::kChainHeadBytes + count * width;
    block = file_.Int32At(slot);
  }
  return entries;
}

/// Takes note of a structure; false when it does not lie inside the file or its bytes are taken.
bool ContainerWalk::Take(const Structure& structure, std::int64_t slot) {
  if (!file_.Contains(structure.position, structure.bytes)) {
    ReportUnreachable(structure, slot);
    return false;
  }
  if (const std::int64_t at = claimed_.Claim(structure.position, structure.bytes); at != 0) {
    observer_.OnConflict({structure, at, slot});
    return false;
  }
  observer_.OnStructure(structure);
  return true;
}

void ContainerWalk::ReportUnreachable(const Structure& structure, std::int64_t slot) {
  const std::string name(KindWords(structure.kind));
  if (file_.Contains(structure.position, 1)) {
    const Damage damage =
        structure.kind == StructureKind::kIndex ? Damage::kIndexBlock : Damage::kCut;
    return Report(damage, structure.place, structure.position,
                  "the " + name + " at " + Number(structure.position) + " takes " +
                      Number(structure.bytes) + " bytes, the file ends at " +
                      Number(file_.Length()),
                  StillReadable(structure));
  }
  Report(Damage::kOutside, structure.place, slot,
         "the pointer to the " + name + " is " + Number(structure.position) +
             ", the file has positions 1 to " + Number(file_.Length()),
         StillReadable(structure));
}

void ContainerWalk::CheckCode(const Place& place, std::int64_t position) {
  const std::int16_t code = file_.Int16At(position);
  if (HasTypeNumber(storage::DecodeCellCode(code))) return;
  Report(Damage::kCellCode, place, position,
         "the cell code " + Number(code) + " has no type number", "the text, if its form is right");
}

void ContainerWalk::Report(Damage damage, const Place& place, std::int64_t position,
                           std::string what, std::string readable) {
  observer_.OnFinding({damage, PathOf(place.matrix), place.field, place.record, position,
                       std::move(what), std::move(readable)});
}

}  // namespace orv::inspect
