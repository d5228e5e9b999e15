#include "support/structure_walk.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>

namespace orv::test {
namespace {

struct Extent {
  std::int64_t begin;
  std::int64_t end;  ///< the position behind the last byte
  std::string what;
};

class Walker {
 public:
  explicit Walker(std::string_view file) : file_(std::string(file)) {
    walk_.uses.assign(file.size(), ByteUse::kDead);
  }

  void RecordReads(std::set<Word>& reads) { file_.RecordReads(reads); }

  StructureWalk Walk() {
    Guarded("file header", [&] { WalkHeader(); });
    FindOverlaps();
    for (const Extent& extent : extents_) {
      walk_.liveBytes += static_cast<std::size_t>(extent.end - extent.begin);
    }
    return walk_;
  }

 private:
  template <typename Step>
  void Guarded(const std::string& what, Step step) {
    try {
      step();
    } catch (const std::out_of_range& failure) {
      Complain(what + ": " + failure.what() + " is outside the file");
    }
  }

  void Complain(const std::string& problem) { walk_.problems.push_back(problem); }
  void Check(bool holds, const std::string& problem) {
    if (!holds) Complain(problem);
  }

  /// Takes note of a live structure; false when it does not lie inside the file.
  bool Claim(std::int64_t position, std::int64_t bytes, const std::string& what) {
    if (position < 1 || bytes < 0 || position - 1 + bytes > file_.size()) {
      Complain(what + " at " + std::to_string(position) + ", " + std::to_string(bytes) +
               " bytes, is outside the file");
      return false;
    }
    extents_.push_back({position, position + bytes, what});
    return true;
  }

  /// Notes what bytes of a structure are for; those outside the file are left out.
  void Mark(std::int64_t position, std::int64_t bytes, ByteUse use) {
    for (std::int64_t at = std::max<std::int64_t>(position, 1);
         at < position + bytes && at <= file_.size(); ++at) {
      walk_.uses[static_cast<std::size_t>(at - 1)] = use;
    }
  }

  void WalkHeader() {
    Claim(1, 51, "file header");
    Mark(1, 3, ByteUse::kMark);
    Mark(4, 4, ByteUse::kPointer);
    Mark(8, 6, ByteUse::kMark);
    Mark(14, 38, ByteUse::kUnread);
    Check(file_.Byte(1) == 1, "the first byte is not 1");
    Check(file_.bytes().substr(7, 6) == "Pellox", "the magic word is missing");
    Matrix(file_.Root(), "root");
  }

  void Matrix(std::int64_t position, const std::string& what) {
    ++walk_.matrices;
    if (!Claim(position, 16, what) || !matrices_.insert(position).second) return;
    Mark(position, 2, ByteUse::kCode);
    Mark(position + 2, 4, ByteUse::kPointer);
    Mark(position + 6, 2, ByteUse::kMark);
    Mark(position + 8, 8, ByteUse::kPointer);
    Guarded(what, [&] {
      Check(file_.Int16(position) < 0, what + ": the code is not negative");
      Check(file_.Int16(position + 6) == 1, what + ": the header word is not 1");
      Text(file_.Int32(position + 2), 4, what + ", title");
      const std::int64_t properties = file_.Int32(position + 8);
      if (properties != 0) Matrix(properties, what + "/#");
      if (file_.FieldTable(position) != 0) FieldTable(position, what);
    });
  }

  void FieldTable(std::int64_t matrix, const std::string& what) {
    const std::int64_t table = file_.FieldTable(matrix);
    if (Claim(table, 6, what + ", field table")) Mark(table, 6, ByteUse::kCount);
    const std::int64_t fields = file_.Fields(matrix);
    const std::int64_t records = file_.Records(matrix);
    Check(fields >= 0 && records >= 0, what + ": a negative count");
    const std::vector<std::int64_t> slots = Chain(table + 6, 4, what + ", descriptor array");
    Check(static_cast<std::int64_t>(slots.size()) >= fields, what + ": fewer slots than fields");
    for (std::size_t i = 0; i < slots.size(); ++i) {
      Mark(slots[i], 4, ByteUse::kPointer);
      const auto f = static_cast<std::int64_t>(i) + 1;
      const std::int64_t descriptor = file_.Int32(slots[i]);
      const std::string field = what + ", field " + std::to_string(f);
      Check((descriptor != 0) == (f <= fields), field + ": the slot does not agree with the count");
      if (descriptor != 0 && f <= fields) {
        Guarded(field, [&] { Descriptor(matrix, descriptor, records, field); });
      }
    }
  }

  void Descriptor(std::int64_t matrix, std::int64_t at, std::int64_t records,
                  const std::string& what) {
    ++walk_.fields;
    if (Claim(at, 17, what)) MarkDescriptor(at);
    Text(at + 17, LengthBytes(file_.Int16(at + 15)), what + ", name");
    const std::int64_t start = file_.Int32(at);
    if (start == 0) return;
    const std::int64_t style = file_.Byte(at + 8);
    const std::int64_t size = file_.Int16(at + 9);
    if (style >= 1 && style <= 4) {
      Cells(start, records, what);
    } else if (style == 5 || style == 6) {
      for (const std::int64_t cell : Chain(start, size, what + ", data")) {
        Mark(cell, size, ByteUse::kFixed);
      }
    } else if (style == 11) {
      Index(matrix, at, start, size, records, what);
    } else if (style != 7) {
      Complain(what + ": style " + std::to_string(style));
    }
  }

  void MarkDescriptor(std::int64_t at) {
    Mark(at, 4, ByteUse::kPointer);
    Mark(at + 4, 4, ByteUse::kMark);
    Mark(at + 8, 1, ByteUse::kStyle);
    Mark(at + 9, 2, ByteUse::kCellSize);
    Mark(at + 11, 2, ByteUse::kDataType);
    Mark(at + 13, 4, ByteUse::kCode);
  }

  void Cells(std::int64_t start, std::int64_t records, const std::string& what) {
    const std::vector<std::int64_t> slots = Chain(start, 4, what + ", data");
    for (std::size_t i = 0; i < slots.size(); ++i) {
      Mark(slots[i], 4, ByteUse::kPointer);
      const auto r = static_cast<std::int64_t>(i) + 1;
      const std::int64_t cell = file_.Int32(slots[i]);
      if (cell == 0) continue;
      const std::string where = what + ", record " + std::to_string(r);
      Check(r <= records, where + ": a cell behind the last record");
      Guarded(where, [&] { Cell(cell, where); });
    }
  }

  void Cell(std::int64_t cell, const std::string& what) {
    ++walk_.cells;
    const std::int64_t code = file_.Int16(cell);
    if (code < 0) return Matrix(cell, what);
    if (Claim(cell, 2, what)) Mark(cell, 2, ByteUse::kCode);
    Text(cell + 2, LengthBytes(code), what + ", text");
  }

  void Index(std::int64_t matrix, std::int64_t descriptor, std::int64_t start, std::int64_t width,
             std::int64_t records, const std::string& what) {
    if (!Claim(start, 4 + width * records, what + ", index")) return;
    Mark(start, 4, ByteUse::kUnread);
    Mark(start + 4, width * records, ByteUse::kIndex);
    const std::int64_t values = DictionaryRecords(matrix, file_.Int16(descriptor + 13));
    for (std::int64_t r = 1; r <= records; ++r) {
      const std::int64_t at = start + 4 + width * (r - 1);
      const std::int64_t index = width == 1   ? file_.Byte(at)
                                 : width == 2 ? file_.Int16(at)
                                 : width == 4 ? file_.Int32(at)
                                              : file_.Int32(at + 2);
      Check(index >= 0 && index <= values,
            what + ", record " + std::to_string(r) + ": index " + std::to_string(index));
    }
  }

  /// Records of the dictionary matrix of a type number, 0 when there is none.
  std::int64_t DictionaryRecords(std::int64_t matrix, std::int64_t code) const {
    const std::int64_t types = file_.Int32(matrix + 8);
    if (types == 0) return 0;
    const std::int64_t list = file_.Cell(types, RowWith(types, std::to_string(code)), 3);
    const std::int64_t dictionary = file_.Cell(list, RowWith(list, "dictionary"), 2);
    return file_.Int16(dictionary) < 0 ? file_.Records(dictionary) : 0;
  }

  std::int64_t RowWith(std::int64_t matrix, const std::string& text) const {
    for (std::int64_t r = 1; r <= file_.Records(matrix); ++r) {
      const std::int64_t cell = file_.Cell(matrix, r, 1);
      if (cell == 0) continue;
      const std::string own = file_.bytes().substr(static_cast<std::size_t>(cell + 2),
                                                   static_cast<std::size_t>(file_.Byte(cell + 2)));
      if (own == text) return r;
    }
    throw std::out_of_range("the row \"" + text + "\"");
  }

  static int LengthBytes(std::int64_t code) { return code < 0 || code >= 16380 ? 4 : 1; }

  /// Claims the blocks and returns the entries' positions.
  std::vector<std::int64_t> Chain(std::int64_t start, std::int64_t w, const std::string& what) {
    std::vector<std::int64_t> entries;
    std::set<std::int64_t> met;
    Check(w > 0, what + ": entries of " + std::to_string(w) + " bytes");
    for (std::int64_t block = start; block != 0 && w > 0;) {
      if (!met.insert(block).second) {
        Complain(what + ": the chain loops");
        break;
      }
      const std::int64_t n = file_.Int32(block);
      if (!Claim(block, 4 + n * w + 4, what) || n < 0) break;
      Mark(block, 4, ByteUse::kCount);
      Mark(block + 4 + n * w, 4, ByteUse::kPointer);
      for (std::int64_t k = 0; k < n; ++k) entries.push_back(block + 4 + k * w);
      block = file_.Int32(block + 4 + n * w);
    }
    return entries;
  }

  void Text(std::int64_t position, int L, const std::string& what) {
    std::set<std::int64_t> met;
    for (std::int64_t piece = position; piece != 0 || met.empty();) {
      if (!met.insert(piece).second) return Complain(what + ": the text loops");
      const std::int64_t length = L == 1 ? file_.Byte(piece) : file_.Int32(piece);
      if (length < 0 || !Claim(piece, L + length + 4, what))
        return Complain(what + ": a bad length");
      Mark(piece, L, ByteUse::kLength);
      Mark(piece + L, length, ByteUse::kText);
      Mark(piece + L + length, 4, ByteUse::kPointer);
      piece = file_.Int32(piece + L + length);
    }
  }

  void FindOverlaps() {
    std::sort(extents_.begin(), extents_.end(),
              [](const Extent& a, const Extent& b) { return a.begin < b.begin; });
    const Extent* last = nullptr;
    for (const Extent& extent : extents_) {
      if (last != nullptr && extent.begin < last->end) {
        Complain(extent.what + " at " + std::to_string(extent.begin) + " overlaps " + last->what +
                 " at " + std::to_string(last->begin) + " to " + std::to_string(last->end - 1));
      }
      if (last == nullptr || extent.end > last->end) last = &extent;
    }
  }

  ContainerBytes file_;
  StructureWalk walk_;
  std::vector<Extent> extents_;
  std::set<std::int64_t> matrices_;
};

}  // namespace

bool IsContent(ByteUse use) {
  return use == ByteUse::kText || use == ByteUse::kFixed || use == ByteUse::kIndex ||
         use == ByteUse::kUnread || use == ByteUse::kDead;
}

std::string_view UseName(ByteUse use) {
  static constexpr std::array<std::string_view, 13> kNames = {
      "dead",   "unread", "text",  "fixed",     "index",     "pointer", "count",
      "length", "code",   "style", "cell size", "data type", "mark"};
  return kNames.at(static_cast<std::size_t>(use));
}

std::string StructureWalk::Text() const {
  std::string text;
  for (const std::string& problem : problems) text += problem + "\n";
  return text;
}

StructureWalk WalkStructures(std::string_view file) { return Walker(file).Walk(); }

std::vector<Word> MeaningfulWords(std::string_view file) {
  std::set<Word> words;
  Walker walker(file);
  walker.RecordReads(words);
  walker.Walk();
  return {words.begin(), words.end()};
}

}  // namespace orv::test
