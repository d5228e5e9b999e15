#include "inspect/rescue.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <optional>
#include <unordered_set>
#include <utility>

#include "inspect/dictionary_check.h"
#include "inspect/matrix_search.h"
#include "inspect/sound_code.h"
#include "storage/bytes.h"
#include "storage/cell_batch.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/value_types.h"

namespace orv::inspect {

namespace layout = storage::layout;
namespace free_size = storage::free_size;
namespace style_code = storage::style_code;
using platform::File;
using platform::RunTimeFailure;
using storage::DictionaryIndex;
using storage::FieldStyle;

namespace {

constexpr std::int64_t kGrowthFactor = 16;
constexpr std::int64_t kGrowthBytes = std::int64_t{16} << 20;
constexpr std::int32_t kGreatestDepth = 1000;
/// Where the root of a new file stands.
constexpr std::int32_t kUsualRoot = 52;
constexpr std::int16_t kPlain = layout::cell::kPlainType;

/// The entries of a chain array as far as its blocks can be followed.
class Entries {
 public:
  Entries(File& file, std::int32_t start, std::int32_t width)
      : file_(file), start_(start), width_(width) {}

  /// Entry `k` and its neighbours; a count of 0 behind the last one that can be reached.
  storage::ChainRun Run(std::int64_t k) {
    try {
      return storage::FindChainRun(file_, start_, k, width_);
    } catch (const RunTimeFailure&) {
      broken_ = true;
      return {};
    }
  }
  /// Whether a search met damage.
  bool broken() const { return broken_; }

  /// How many entries can be reached.
  std::int64_t Count() {
    std::int64_t count = 0;
    for (auto run = Run(1); run.count > 0; run = Run(count + 1)) count += run.count;
    return count;
  }
  /// The number of the last entry that is not 0, of pointers.
  std::int64_t LastUsed() {
    std::int64_t last = 0;
    std::int64_t k = 1;
    for (auto run = Run(k); run.count > 0; run = Run(k)) {
      for (std::int64_t i = 0; i < run.count; ++i, ++k) {
        if (file_.Int32At(run.position + i * width_) != 0) last = k;
      }
    }
    return last;
  }

 private:
  File& file_;
  std::int32_t start_;
  std::int32_t width_;
  bool broken_ = false;
};

class FileRescue {
 public:
  FileRescue(File& source, File& target)
      : source_(source),
        target_(target),
        greatest_(
            std::min(source.Length() * kGrowthFactor + kGrowthBytes, platform::kGreatestLength)),
        batch_(target) {}

  Rescued Run() {
    const std::int32_t root = Root();
    if (root == 0) {
      storage::CreateContainer(target_, {});
      Remark({{}, 0, Finding::kNoRecord, "no root matrix was found; the copy is empty"});
      return std::move(rescued_);
    }
    storage::CreateContainer(target_, Title(root, "/"));
    const std::int32_t copy = RootOf(target_);
    target_.WriteInt16(copy, NegatedCode(root));
    matrices_.push_back({root, copy, 0, "", 0});
    for (std::size_t i = 0; i < matrices_.size(); ++i) CopyMatrix(i);
    batch_.Flush();
    for (const PackedField& field : packed_) VerifyPacked(field);
    return std::move(rescued_);
  }

 private:
  /// A matrix that has a header in the copy and waits for its content.
  struct Matrix {
    std::int32_t from = 0;
    std::int32_t to = 0;
    std::size_t parent = 0;
    std::string steps;
    std::int32_t depth = 0;
  };
  /// One field on its way.
  struct Field {
    std::size_t matrix = 0;
    std::int32_t number = 0;
    std::int32_t from = 0;  ///< descriptor; 0 when it is not to be had
    std::int32_t to = 0;
    FieldStyle style;
    std::int32_t start = 0;  ///< of the data in the source
  };
  /// A field that was copied as bytes and must read as before.
  struct PackedField {
    Field field;
    std::int32_t records = 0;
  };

  void Remark(RescueRemark remark) {
    rescued_.lost = rescued_.lost || remark.isLoss;
    if (rescued_.remarks.size() >= Rescued::kGreatestListed) {
      ++rescued_.unlisted;
    } else {
      rescued_.remarks.push_back(std::move(remark));
    }
  }
  std::string PathOf(std::size_t matrix) const {
    const std::string& steps = matrices_[matrix].steps;
    return steps.empty() ? "/" : steps;
  }
  void Lose(const Field& field, std::int64_t record, std::string what) {
    Remark({PathOf(field.matrix), field.number, record, std::move(what)});
  }
  void Note(const Field& field, std::string what) {
    Remark({PathOf(field.matrix), field.number, Finding::kNoRecord, std::move(what), false});
  }

  /// Whether the copy may grow by so many bytes; tells it once when it may not.
  bool HasRoom(std::int64_t bytes) {
    if (target_.Length() + bytes <= greatest_) return true;
    if (!full_) {
      Remark({{},
              0,
              Finding::kNoRecord,
              "structures are reached so often that the copy was ended at " +
                  std::to_string(target_.Length()) + " bytes"});
    }
    full_ = true;
    return false;
  }

  std::int32_t Root() {
    if (const std::int32_t root = RootOf(source_); root != 0) return root;
    if (!CanBeMatrix(source_, kUsualRoot) || source_.Int16At(kUsualRoot) >= 0) return 0;
    Remark({{},
            0,
            Finding::kNoRecord,
            "the root pointer is wrong; the matrix at " + std::to_string(kUsualRoot) +
                " was taken for the root"});
    return kUsualRoot;
  }

  std::string Title(std::int32_t matrix, const std::string& path) {
    const std::int32_t position = source_.Int32At(std::int64_t{matrix} + layout::matrix::kTitle);
    std::string buffer;
    const std::string title(
        storage::ReadChainedText(source_, position, layout::kLongLengthBytes, buffer));
    if (!storage::IsWholeText(source_, position, layout::kLongLengthBytes)) {
      Remark({path, 0, Finding::kNoRecord,
              "the title can be read in part only: " + std::to_string(title.size()) + " bytes"});
    }
    return title;
  }

  std::int16_t NegatedCode(std::int32_t matrix) const {
    return SoundMatrixCode(source_.Int16At(matrix));
  }

  bool IsInside(std::int32_t position, std::size_t matrix) const {
    for (std::size_t i = matrix;; i = matrices_[i].parent) {
      if (matrices_[i].from == position) return true;
      if (i == 0) return false;
    }
  }

  /// Why a matrix cannot be copied as one; nothing when it can.
  std::optional<std::string> Obstacle(std::int64_t position, std::size_t parent) {
    if (!CanBeMatrix(source_, position)) return "it does not lie inside the file";
    if (IsInside(static_cast<std::int32_t>(position), parent)) return "it contains itself";
    if (matrices_[parent].depth >= kGreatestDepth) return "it is nested too deeply";
    return std::nullopt;
  }

  /// Appends the header of a matrix's copy and lets it wait for its turn.
  std::int32_t Announce(std::int32_t position, std::size_t parent, const std::string& step) {
    const std::string steps = matrices_[parent].steps + step;
    const std::string title = Title(position, steps);
    if (!HasRoom(layout::matrix::kHeaderBytes + std::ssize(title))) return 0;
    const std::int32_t copy = storage::EndOfFile(target_);
    storage::CreateMatrixHeader(target_, copy, NegatedCode(position), title,
                                layout::matrix::kHeaderWordValue);
    matrices_.push_back({position, copy, parent, steps, matrices_[parent].depth + 1});
    return copy;
  }

  void CopyMatrix(std::size_t number) {
    ++rescued_.matrices;
    CopyProperties(number);
    if (source_.Int32At(std::int64_t{matrices_[number].from} + layout::matrix::kFieldTable) == 0) {
      return;
    }
    std::vector<Field> fields = FindFields(number);
    if (fields.empty() || full_) return;
    const std::int32_t records = CountRecords(number, fields);
    CreateFields(number, fields, records);
    for (Field& field : fields) CopyData(field, records);
  }

  void CopyProperties(std::size_t number) {
    const std::int32_t position =
        source_.Int32At(std::int64_t{matrices_[number].from} + layout::matrix::kProperties);
    if (position == 0) return;
    if (const auto obstacle = Obstacle(position, number)) {
      return Remark({PathOf(number), 0, Finding::kNoRecord,
                     "the property matrix cannot be copied: " + *obstacle});
    }
    const std::int32_t copy = Announce(position, number, "/#");
    if (copy != 0) {
      target_.WriteInt32(std::int64_t{matrices_[number].to} + layout::matrix::kProperties, copy);
    }
  }

  /// The fields that are counted and those behind them that have a descriptor.
  std::vector<Field> FindFields(std::size_t number) {
    const std::int32_t matrix = matrices_[number].from;
    const std::int64_t table = storage::FieldTablePosition(source_, matrix);
    if (!source_.Contains(table, layout::field_table::kChain)) {
      Remark({PathOf(number), 0, Finding::kNoRecord,
              "the field table cannot be read: the matrix arrives without fields"});
      return {};
    }
    Entries slots(source_, static_cast<std::int32_t>(table + layout::field_table::kChain),
                  layout::kPointerBytes);
    const std::int64_t counted = storage::ContainerFieldCount(source_, matrix);
    const std::int64_t reached = slots.Count();
    const std::int64_t count = std::min<std::int64_t>(
        {std::max(counted, slots.LastUsed()), reached, std::numeric_limits<std::int16_t>::max()});
    if (counted > count) {
      Remark({PathOf(number), 0, Finding::kNoRecord,
              "of " + std::to_string(counted) + " fields only " + std::to_string(count) +
                  " can be reached"});
    }
    if (!HasRoom(count * (layout::descriptor::kBytes + layout::kPointerBytes))) return {};
    std::vector<Field> fields;
    for (std::int64_t f = 1; f <= count; ++f) {
      const storage::ChainRun slot = slots.Run(f);
      fields.push_back(
          FieldAt(number, static_cast<std::int32_t>(f), source_.Int32At(slot.position)));
    }
    return fields;
  }

  Field FieldAt(std::size_t matrix, std::int32_t number, std::int32_t descriptor) {
    Field field{matrix, number, 0, 0, {}, 0};
    if (!source_.Contains(descriptor, layout::descriptor::kBytes)) {
      Lose(field, Finding::kNoRecord, "the field has no descriptor: it arrives empty");
      return field;
    }
    field.from = descriptor;
    field.style = storage::StyleOf(descriptor, source_);
    field.start = source_.Int32At(descriptor);
    return field;
  }

  /// The record count. Where it cannot be, or all fields have data behind it, what they have data
  /// for: a single field with more is damage to that field.
  std::int32_t CountRecords(std::size_t number, const std::vector<Field>& fields) {
    const std::int32_t matrix = matrices_[number].from;
    const std::int64_t counted = storage::ContainerRecordCount(source_, matrix);
    const bool plausible = counted >= 0 && counted == storage::ReadableRecordCount(source_, matrix);
    std::int64_t least = std::numeric_limits<std::int32_t>::max();
    std::int64_t used = 0;
    for (const Field& field : fields) {
      const std::int64_t width = EntryWidth(field);
      if (width == 0) continue;
      Entries entries(source_, field.start, static_cast<std::int32_t>(width));
      least = std::min(least, entries.Count());
      used = std::max(
          used, field.style.freeSize == free_size::kFree ? entries.LastUsed() : entries.Count());
    }
    const std::int64_t records =
        plausible && least <= counted ? counted : std::max(used, plausible ? counted : 0);
    if (records != counted) {
      Remark({PathOf(number), 0, Finding::kNoRecord,
              std::to_string(counted) + " records are counted, the copy has " +
                  std::to_string(records),
              false});
    }
    rescued_.records += records;
    return static_cast<std::int32_t>(records);
  }

  /// Bytes of an entry of the field's data, 0 for a field without an array of entries.
  static std::int64_t EntryWidth(const Field& field) {
    if (field.from == 0 || field.start == 0) return 0;
    if (field.style.freeSize == free_size::kFree) return layout::kPointerBytes;
    return field.style.freeSize == free_size::kFixed ? std::max<int>(field.style.cellSize, 0) : 0;
  }

  void CreateFields(std::size_t number, std::vector<Field>& fields, std::int32_t records) {
    const std::int32_t matrix = matrices_[number].to;
    storage::CreateFieldTable(target_, matrix, static_cast<std::int16_t>(fields.size()));
    storage::SetRecordCount(target_, matrix, records);
    storage::ErrorCode error;
    for (Field& field : fields) {
      ++rescued_.fields;
      const auto f = static_cast<std::int16_t>(field.number);
      storage::CreateFieldDescriptor(target_, matrix, f, error);
      field.to = storage::FindFieldDescriptor(target_, matrix, f);
      if (field.from != 0) CopyDescriptor(field);
    }
  }

  void CopyDescriptor(Field& field) {
    namespace at = layout::descriptor;
    const std::int64_t from = field.from;
    const std::int64_t to = field.to;
    target_.WriteInt16(to + at::kFieldCode, SoundTextCode(source_.Int16At(from + at::kFieldCode)));
    const std::int16_t type = field.style.dataType;
    if (type >= storage::type::kVariant && type <= storage::type::kFile) {
      target_.WriteInt16(to + at::kDataType, type);
    } else {
      Note(field, "the data type code " + std::to_string(type) + " became 0 (variant)");
    }
    CopyStyle(field);
    CopyName(field);
  }

  void CopyStyle(const Field& field) {
    namespace at = layout::descriptor;
    const std::uint8_t style = source_.ByteAt(std::int64_t{field.from} + at::kStyle);
    const bool fixed = field.style.freeSize == free_size::kFixed;
    const bool dictionary = field.style.freeSize == free_size::kDictionary;
    const bool sized = (fixed && field.style.cellSize > 0) ||
                       (dictionary && DictionaryIndex::IsWidth(field.style.cellSize));
    const bool known = (style >= style_code::kFree && style < style_code::kFixed) || sized ||
                       style == style_code::kCompressed;
    if (!known) {
      return Note(field,
                  "the style code " + std::to_string(style) + " with the cell size " +
                      std::to_string(source_.Int16At(std::int64_t{field.from} + at::kCellSize)) +
                      " became the free style");
    }
    target_.WriteByte(std::int64_t{field.to} + at::kStyle, style);
    if (sized) target_.WriteInt16(std::int64_t{field.to} + at::kCellSize, field.style.cellSize);
  }

  /// A name is written in the short form, however it was stored: it reads the same.
  void CopyName(const Field& field) {
    const std::int64_t cell = std::int64_t{field.from} + layout::descriptor::kTitleCell;
    std::int16_t code = 0;
    std::string buffer;
    const std::string name(
        storage::GetCell(static_cast<std::int32_t>(cell), source_, code, buffer));
    const std::int64_t text = code < 0 ? std::int64_t{source_.Int32At(cell + layout::cell::kText)}
                                       : cell + layout::cell::kText;
    if (!storage::IsWholeText(source_, text, storage::LengthBytes(code))) {
      Lose(field, 0,
           "the name can be read in part only: " + std::to_string(name.size()) + " bytes");
    }
    if (!HasRoom(std::ssize(name))) return;
    const std::int64_t own = std::int64_t{field.to} + layout::descriptor::kTitleCell;
    storage::WriteChainedText(target_, static_cast<std::int32_t>(own + layout::cell::kText), name,
                              layout::kShortLengthBytes);
    target_.WriteInt16(own, storage::EncodeCellCode({SoundCode(code).type, false, false}));
  }

  void CopyData(const Field& field, std::int32_t records) {
    if (field.from == 0 || field.start == 0 || full_) return;
    switch (field.style.freeSize) {
      case free_size::kFree:
        return CopyCells(field, records);
      case free_size::kFixed:
        return CopyFixed(field, records);
      case free_size::kDictionary:
        return CopyIndex(field, records);
      default:
        return Lose(field, Finding::kNoRecord, "the cells of a compressed field cannot be read");
    }
  }

  /// Tells where the data ends too early or too late.
  void TellEnd(const Field& field, const Entries& entries, std::int64_t count,
               std::int32_t records) {
    if (count > records) {
      Lose(field, records + 1,
           "the field has data for " + std::to_string(count) +
               " records, which are left out behind " + "the last of " + std::to_string(records));
    }
    if (count >= records || !entries.broken()) return;
    Lose(field, count + 1,
         "the field's data breaks off: records " + std::to_string(count + 1) + " to " +
             std::to_string(records) + " cannot be reached");
  }

  void CopyCells(const Field& field, std::int32_t records) {
    Entries entries(source_, field.start, layout::kPointerBytes);
    const std::int64_t all = entries.Count();
    TellEnd(field, entries,
            all > records ? std::max<std::int64_t>(entries.LastUsed(), records) : all, records);
    const std::int64_t count = std::min<std::int64_t>(all, records);
    if (count == 0 || !HasRoom(count * layout::kPointerBytes)) return;
    const std::int32_t block = storage::AppendChainBlock(target_, count, layout::kPointerBytes);
    target_.WriteInt32(field.to, block);
    std::int64_t slot = std::int64_t{block} + layout::kChainHeadBytes;
    for (std::int64_t r = 1; r <= count;) {
      const storage::ChainRun run = entries.Run(r);
      const std::int64_t end = std::min(r + run.count, count + 1);
      for (std::int64_t from = run.position; r < end && !full_; ++r) {
        CopyCell(field, r, source_.Int32At(from), slot);
        from += layout::kPointerBytes;
        slot += layout::kPointerBytes;
      }
      if (full_) return;
    }
  }

  void CopyCell(const Field& field, std::int64_t r, std::int32_t cell, std::int64_t slot) {
    if (cell == 0) return;
    if (!source_.Contains(cell, layout::cell::kText)) {
      return Lose(field, r, "the cell's pointer leads to " + std::to_string(cell));
    }
    if (source_.Int16At(cell) < 0) return CopyNested(field, r, cell, slot);
    std::int16_t code = 0;
    const std::string_view text = storage::GetCell(cell, source_, code, buffer_);
    if (!storage::IsWholeText(source_, std::int64_t{cell} + layout::cell::kText,
                              storage::LengthBytes(code))) {
      Lose(field, r,
           "the text can be read in part only: " + std::to_string(text.size()) + " bytes");
    }
    AddText(SoundTextCode(code), text, slot);
  }

  void AddText(std::int16_t code, std::string_view text, std::int64_t slot) {
    if (!HasRoom(std::ssize(text))) return;
    batch_.Add(slot, code, text);
    ++rescued_.cells;
  }

  void CopyNested(const Field& field, std::int64_t r, std::int32_t cell, std::int64_t slot) {
    const auto obstacle = Obstacle(cell, field.matrix);
    if (!obstacle) {
      const std::int32_t copy = Announce(
          cell, field.matrix, "/[" + std::to_string(r) + "," + std::to_string(field.number) + "]");
      if (copy == 0) return;
      target_.WriteInt32(slot, copy);
      ++rescued_.cells;
      return;
    }
    std::int16_t code = 0;
    const std::string_view title = storage::GetCell(cell, source_, code, buffer_);
    Lose(field, r, "the matrix cannot be copied: " + *obstacle + "; its title arrives as a text");
    AddText(storage::NewCellCode(kPlain, title), title, slot);
  }

  void CopyFixed(const Field& field, std::int32_t records) {
    const std::int64_t width = field.style.cellSize;
    if (width < 1) {
      return Lose(field, Finding::kNoRecord,
                  "cells of " + std::to_string(width) + " bytes cannot be read");
    }
    Entries entries(source_, field.start, field.style.cellSize);
    const std::int64_t all = entries.Count();
    TellEnd(field, entries, all, records);
    const std::int64_t count = std::min<std::int64_t>(all, records);
    if (count == 0 || !HasRoom(count * width)) return;
    const std::int32_t block =
        storage::AppendChainBlock(target_, count, static_cast<std::int32_t>(width));
    std::int64_t to = std::int64_t{block} + layout::kChainHeadBytes;
    for (std::int64_t r = 1; r <= count;) {
      const storage::ChainRun run = entries.Run(r);
      const std::int64_t taken = std::min(run.count, count - r + 1);
      target_.Write(to, source_.View(run.position, taken * width));
      to += taken * width;
      r += taken;
    }
    target_.WriteInt32(field.to, block);
    rescued_.cells += count;
    packed_.push_back({field, static_cast<std::int32_t>(count)});
  }

  void CopyIndex(const Field& field, std::int32_t records) {
    const std::int32_t width = field.style.cellSize;
    if (!DictionaryIndex::IsWidth(width)) {
      return Lose(field, Finding::kNoRecord,
                  "index entries of " + std::to_string(width) + " bytes cannot be read");
    }
    const std::int64_t room = source_.Length() + 1 - field.start - DictionaryIndex::kHeadBytes;
    const std::int64_t present = std::clamp<std::int64_t>(room / width, 0, records);
    if (field.start < 1 || present < records) {
      Lose(field, present + 1, "the index ends before this record");
    }
    if (field.start < 1 || !HasRoom(std::int64_t{records} * width)) return;
    const std::string block = IndexBlock(field, present, records);
    const std::int32_t start = storage::EndOfFile(target_);
    target_.Write(start, block);
    target_.WriteInt32(field.to, start);
    rescued_.cells += records;
    packed_.push_back({field, records});
  }

  /// The index with 0 for entries that the file or the dictionary does not have.
  std::string IndexBlock(const Field& field, std::int64_t present, std::int32_t records) {
    const DictionaryIndex index(field.start, field.style.cellSize);
    std::string block(DictionaryIndex::kHeadBytes, '\0');
    storage::PatchInteger(block, 0, DictionaryIndex::kTag);
    const std::int64_t values = CountValues(field, present);
    std::int64_t wrong = 0;
    std::int32_t first = 0;
    for (std::int32_t r = 1; r <= records; ++r) {
      std::int32_t value = r <= present ? index.Read(source_, r) : 0;
      if (value < 0 || value > values) {
        if (++wrong == 1) first = r;
        value = 0;
      }
      DictionaryIndex::AppendEntry(block, field.style.cellSize, value);
    }
    if (wrong > 0) {
      Lose(field, first,
           "from here on " + std::to_string(wrong) +
               " cells have an index above the dictionary's " + std::to_string(values) + " values");
    }
    storage::AppendInteger(block, std::int32_t{0});
    return block;
  }

  /// Values of the field's dictionary. Without one there is no limit: the field will be unpacked,
  /// which tells what is missing.
  std::int64_t CountValues(const Field& field, std::int64_t present) {
    DictionaryCheck dictionary(source_);
    return dictionary
        .CountValues({{},
                      matrices_[field.matrix].from,
                      field.from,
                      field.start,
                      field.style.cellSize,
                      present})
        .value_or(std::numeric_limits<std::int32_t>::max());
  }

  storage::FieldReader SourceReader(const Field& field) {
    return {source_, matrices_[field.matrix].from, field.from, &sourceTypes_};
  }

  /// A packed field must read as in the source, by the types of the copy; otherwise its texts are
  /// written one by one.
  void VerifyPacked(const PackedField& packed) {
    if (!HasDictionary(packed)) {
      return Unpack(packed, "its dictionary is not to be had");
    }
    if (!full_ && !ReadsAsBefore(packed)) Unpack(packed, "its cells would read differently");
  }

  bool HasDictionary(const PackedField& packed) {
    const Field& field = packed.field;
    if (field.style.freeSize != free_size::kDictionary) return true;
    DictionaryCheck check(target_);
    return !check.Check({{},
                         matrices_[field.matrix].to,
                         field.to,
                         target_.Int32At(field.to),
                         field.style.cellSize,
                         packed.records});
  }

  bool ReadsAsBefore(const PackedField& packed) {
    const Field& field = packed.field;
    storage::FieldReader before = SourceReader(field);
    storage::FieldReader after(target_, matrices_[field.matrix].to, field.to, &targetTypes_);
    const bool dictionary = field.style.freeSize == free_size::kDictionary;
    const DictionaryIndex index(target_.Int32At(field.to), field.style.cellSize);
    std::unordered_set<std::int32_t> compared;
    for (std::int32_t r = 1; r <= packed.records; ++r) {
      if (dictionary && !compared.insert(index.Read(target_, r)).second) continue;
      if (dictionary && index.Read(target_, r) == 0) continue;
      const std::optional<std::string> text = TextOf(before, r);
      if (text && text != TextOf(after, r)) return false;
    }
    return true;
  }

  static std::optional<std::string> TextOf(storage::FieldReader& reader, std::int32_t r) {
    try {
      return std::string(reader.Read(r));
    } catch (const RunTimeFailure&) {
      return std::nullopt;
    }
  }

  void Unpack(const PackedField& packed, const std::string& why) {
    const Field& field = packed.field;
    namespace at = layout::descriptor;
    storage::FieldReader before = SourceReader(field);
    target_.WriteByte(std::int64_t{field.to} + at::kStyle, style_code::kFree);
    target_.WriteInt16(std::int64_t{field.to} + at::kCellSize, 0);
    target_.WriteInt32(field.to, 0);
    Note(field, "the field arrives in the free style: " + why);
    if (!HasRoom(std::int64_t{packed.records} * layout::kPointerBytes)) return;
    const std::int32_t block =
        storage::AppendChainBlock(target_, packed.records, layout::kPointerBytes);
    target_.WriteInt32(field.to, block);
    rescued_.cells -= packed.records;
    const std::int16_t type =
        SoundCode(source_.Int16At(std::int64_t{field.from} + at::kFieldCode)).type;
    std::int64_t unread = 0;
    for (std::int32_t r = 1; r <= packed.records && !full_; ++r) {
      const std::optional<std::string> text = TextOf(before, r);
      if (!text) ++unread;
      if (!text || text->empty()) continue;
      AddText(storage::NewCellCode(type, *text), *text,
              std::int64_t{block} + layout::kChainHeadBytes +
                  (std::int64_t{r} - 1) * layout::kPointerBytes);
    }
    batch_.Flush();
    if (unread > 0) {
      Lose(field, Finding::kNoRecord, std::to_string(unread) + " cells cannot be read");
    }
    if (field.style.freeSize == free_size::kDictionary) TellMissingValues(packed, before);
  }

  /// Without a dictionary the engine reads every index as the empty text.
  void TellMissingValues(const PackedField& packed, storage::FieldReader& before) {
    const DictionaryIndex index(packed.field.start, packed.field.style.cellSize);
    std::int64_t missing = 0;
    for (std::int32_t r = 1; r <= packed.records; ++r) {
      const std::optional<std::string> text = TextOf(before, r);
      if (text && text->empty() && index.Read(source_, r) != 0) ++missing;
    }
    if (missing == 0) return;
    Lose(packed.field, Finding::kNoRecord,
         std::to_string(missing) + " cells have an index and no value");
  }

  File& source_;
  File& target_;
  std::int64_t greatest_;  ///< the length that the copy may reach
  bool full_ = false;
  storage::CellBatch batch_;
  storage::TypeTables sourceTypes_;
  storage::TypeTables targetTypes_;
  std::deque<Matrix> matrices_;  ///< in the order of copying
  std::vector<PackedField> packed_;
  std::string buffer_;
  Rescued rescued_;
};

}  // namespace

Rescued Rescue(File& source, File& target) { return FileRescue(source, target).Run(); }

}  // namespace orv::inspect
