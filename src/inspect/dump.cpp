#include "inspect/dump.h"

#include <algorithm>
#include <array>
#include <utility>

#include "inspect/container_walk.h"
#include "inspect/matrix_search.h"
#include "storage/cell_code.h"
#include "storage/dictionary.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/value_types.h"

namespace orv::inspect {

namespace layout = storage::layout;
using platform::File;

namespace {

std::string CodeText(std::int16_t word) {
  const storage::CellCode code = storage::DecodeCellCode(word);
  return std::to_string(word) + " (type " + std::to_string(code.type) +
         (code.longForm ? ", long" : "") + (code.matrix ? ", matrix" : "") + ")";
}

std::string StyleText(int style) {
  static constexpr std::array<const char*, 12> kNames = {
      nullptr,         "free",       "free, unique", "free",  "free, unique", "fixed",
      "fixed, unique", "compressed", nullptr,        nullptr, nullptr,        "dictionary"};
  const char* const name = static_cast<std::size_t>(style) < kNames.size()
                               ? kNames[static_cast<std::size_t>(style)]
                               : nullptr;
  return std::to_string(style) + " (" + (name == nullptr ? "unknown" : name) + ")";
}

std::string TypeText(std::int16_t type) {
  const std::string_view name = storage::TypeName(type);
  return std::to_string(type) + " (" + (name.empty() ? "unknown" : std::string(name)) + ")";
}

std::string HexText(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (!text.empty()) text += ' ';
    text += kDigits[value >> 4];
    text += kDigits[value & 0xF];
  }
  return text;
}

class Dumper final : public WalkObserver {
 public:
  Dumper(const File& file, const DumpLimits& limits, const DumpSink& sink)
      : file_(file), limits_(limits), sink_(sink) {}

  void Watch(const ContainerWalk& walk) { walk_ = &walk; }

  void OnStructure(const Structure& structure) override {
    item_ = {NameOf(structure), structure.position, structure.bytes, {}, false};
    AddRows(structure);
    sink_(item_);
  }

  void OnFinding(const Finding& finding) override {
    sink_({std::string(DamageWords(finding.damage)) + ": " + finding.what,
           finding.position,
           0,
           {},
           true});
  }

  void OnConflict(const Conflict& conflict) override {
    sink_({NameOf(conflict.wanted) + " at " + std::to_string(conflict.wanted.position) +
               " is not shown again: position " + std::to_string(conflict.at) +
               " belongs to a structure above",
           conflict.slot,
           0,
           {},
           true});
  }

 private:
  std::string NameOf(const Structure& structure) {
    return OwnerText(structure, PathOf(structure.place.matrix));
  }

  /// The structures of a matrix come one after another.
  const std::string& PathOf(std::size_t matrix) {
    if (path_.empty() || matrix != pathOwner_) path_ = walk_->PathOf(matrix);
    pathOwner_ = matrix;
    return path_;
  }

  void AddRows(const Structure& s) {
    switch (s.kind) {
      case StructureKind::kFileHeader:
        return AddFileHeader();
      case StructureKind::kMatrix:
        return AddMatrix();
      case StructureKind::kFieldTable:
        AddInt32(layout::field_table::kRecords, "records");
        return AddInt16(layout::field_table::kFields, "fields");
      case StructureKind::kDescriptor:
        return AddDescriptor();
      case StructureKind::kCell:
        return AddCode(layout::cell::kCode, "cell code");
      case StructureKind::kDescriptorBlock:
      case StructureKind::kPointerBlock:
      case StructureKind::kFixedBlock:
        return AddBlock(s);
      case StructureKind::kIndex:
        return AddIndex(s);
      default:
        return AddPiece(s);
    }
  }

  void AddFileHeader() {
    AddBytes(0, "marks", 3);
    AddInt32(3, "root matrix");
    AddText(7, "magic word", std::ssize(layout::file::kMagic));
    AddText(13, "banner", std::ssize(layout::file::kBanner));
    AddBytes(49, "gap", 2);
  }

  void AddMatrix() {
    AddCode(layout::matrix::kCode, "cell code");
    AddInt32(layout::matrix::kTitle, "title");
    AddInt16(layout::matrix::kHeaderWord, "always 1");
    AddInt32(layout::matrix::kProperties, "property matrix");
    AddInt32(layout::matrix::kFieldTable, "field table");
  }

  void AddDescriptor() {
    namespace at = layout::descriptor;
    AddInt32(at::kData, "data");
    AddInt32(at::kReserved, "always 0");
    Add(at::kStyle, "style", StyleText(file_.ByteAt(item_.position + at::kStyle)));
    AddInt16(at::kCellSize, "cell size");
    Add(at::kDataType, "data type", TypeText(file_.Int16At(item_.position + at::kDataType)));
    AddCode(at::kFieldCode, "field's code");
    AddCode(at::kTitleCell, "name's code");
  }

  void AddPiece(const Structure& s) {
    Add(0, "length", std::to_string(s.count));
    AddText(s.width, "text", s.count);
    AddInt32(s.width + s.count, "next piece");
  }

  void AddBlock(const Structure& s) {
    AddInt32(0, "entries");
    for (std::int64_t i = 0; i < std::min(s.count, limits_.entries); ++i) {
      const std::int64_t offset = layout::kChainHeadBytes + i * s.width;
      const std::string label = "entry " + std::to_string(s.first + i);
      if (s.kind == StructureKind::kFixedBlock) {
        AddBytes(offset, label, s.width);
      } else {
        AddInt32(offset, label);
      }
    }
    AddRest(s, layout::kChainHeadBytes);
    AddInt32(layout::kChainHeadBytes + s.count * s.width, "next block");
  }

  void AddIndex(const Structure& s) {
    AddInt32(0, "means nothing");
    const storage::DictionaryIndex index(static_cast<std::int32_t>(s.position),
                                         static_cast<std::int32_t>(s.width));
    for (std::int64_t r = 1; r <= std::min(s.count, limits_.entries); ++r) {
      Add(index.EntryPosition(r) - s.position, "entry " + std::to_string(r),
          std::to_string(index.Read(file_, r)));
    }
    AddRest(s, storage::DictionaryIndex::kHeadBytes);
  }

  void AddRest(const Structure& s, std::int64_t head) {
    const std::int64_t more = s.count - std::min(s.count, limits_.entries);
    if (more == 0) return;
    Add(head + limits_.entries * s.width, "...", "and " + std::to_string(more) + " more");
  }

  void Add(std::int64_t offset, std::string label, std::string value) {
    item_.rows.push_back({offset, std::move(label), std::move(value), {}, false});
  }
  void AddInt32(std::int64_t offset, std::string label) {
    Add(offset, std::move(label), std::to_string(file_.Int32At(item_.position + offset)));
  }
  void AddInt16(std::int64_t offset, std::string label) {
    Add(offset, std::move(label), std::to_string(file_.Int16At(item_.position + offset)));
  }
  void AddCode(std::int64_t offset, std::string label) {
    Add(offset, std::move(label), CodeText(file_.Int16At(item_.position + offset)));
  }
  void AddText(std::int64_t offset, std::string label, std::int64_t count) {
    item_.rows.push_back({offset,
                          std::move(label),
                          {},
                          std::string(file_.View(item_.position + offset, count)),
                          true});
  }
  /// A few bytes as numbers, many as a text.
  void AddBytes(std::int64_t offset, std::string label, std::int64_t count) {
    constexpr std::int64_t kGreatestNumber = 4;
    if (count > kGreatestNumber) return AddText(offset, std::move(label), count);
    Add(offset, std::move(label), HexText(file_.View(item_.position + offset, count)));
  }

  const File& file_;
  DumpLimits limits_;
  const DumpSink& sink_;
  const ContainerWalk* walk_ = nullptr;
  std::string path_;
  std::size_t pathOwner_ = 0;
  DumpItem item_;
};

}  // namespace

void DumpFile(File& file, const DumpLimits& limits, const DumpSink& sink) {
  Dumper dumper(file, limits, sink);
  ContainerWalk walk(file, dumper);
  dumper.Watch(walk);
  walk.WalkFile();
}

bool DumpMatrix(File& file, const std::vector<storage::PathStep>& steps, const DumpLimits& limits,
                const DumpSink& sink) {
  const std::int32_t matrix = FindMatrix(file, steps);
  if (matrix == 0) return false;
  Dumper dumper(file, limits, sink);
  ContainerWalk walk(file, dumper);
  dumper.Watch(walk);
  walk.WalkMatrix(matrix, StepText(steps));
  return true;
}

}  // namespace orv::inspect
