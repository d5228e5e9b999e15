// The field table service.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/file.h"
#include "storage/error_code.h"
#include "storage/field_style.h"
#include "storage/path_resolver.h"
#include "storage/ports.h"

namespace orv::storage {

/// Empties the caches that a change of a field table makes stale.
class CacheReset {
 public:
  virtual ~CacheReset() = default;
  /// Level 2: the type-value cache; 3: field positions too; 4: the last path and the views' records
  /// too.
  virtual void ResetCaches(int level) = 0;
};

/// Counts, finds, inserts and deletes fields and reads their styles. One for the engine.
class FieldClass {
 public:
  FieldClass(PathResolver& resolver, CacheReset& caches, const Ports& ports, ErrorCode& error)
      : resolver_(resolver), caches_(caches), ports_(ports), error_(error) {}

  /// Fields of the matrix at `p`, or of the dBASE table for -3.
  std::int16_t GetNumFld(std::int32_t p, platform::File& nm) const;
  /// The position of field `f`'s descriptor, through a cache of 100 entries. Raises 9 for a field
  /// beyond the table and for a matrix without one.
  std::int32_t GetFieldPos(std::int32_t pt, std::int16_t f, platform::File& nm) {
    const CacheEntry& entry = cache_[CacheIndex(pt, f)];
    const bool isHit = entry.matrix == pt && entry.field == f && entry.opening == nm.opening();
    return isHit ? entry.position : LookUpField(pt, f, nm);
  }
  /// Resolves the path and fills the style of field `f`; leaves it alone after an error.
  void SvrGetFldStyle(const std::wstring& p, std::int16_t f, FieldStyle& style);
  /// The cell code for record `r`: -2 the field's, 0 the title cell's, above 0 the cell's (0 for a
  /// record without a cell; the field's for fixed and dictionary fields, whose data hold no cells).
  static std::int16_t GetFldTypeSub(std::int32_t p, std::int32_t r, platform::File& nm);

  void SvrCmdAddFields(const std::wstring& pth, std::int16_t numOfFields, std::int16_t f);
  void SvrCmdDelFld(const std::wstring& pth, std::int16_t f);
  /// Fields as the caller sees them, -1 when the path resolves to no matrix.
  std::int32_t SvrFields(const std::wstring& p);
  /// Hands the change to the conversion dialog.
  void SvrSetFldStyle(const std::wstring& pth, std::int16_t f, const FieldStyle& style);
  /// The first field whose trimmed name equals `vlu` without regard to case, else -1.
  std::int16_t GetFieldIdByName(const std::wstring& pth, const std::string& vlu);
  /// The name of field `f` of the matrix at `p` or of the dBASE table, stored form.
  std::string FieldName(std::int32_t p, std::int16_t f, platform::File& nm);
  void EmptyFieldCash() { cache_ = {}; }
  /// Accepts its arguments and does nothing.
  void CompressField(const std::wstring& pth, std::int16_t fld, bool unique);

 private:
  struct CacheEntry {
    std::uint64_t opening = 0;
    std::int32_t matrix = 0;  ///< 0 marks a free entry
    std::int32_t position = 0;
    std::int16_t field = 0;
  };
  static constexpr std::size_t kCacheEntries = 100;

  /// Each field has one place in the cache; the neighbours of a matrix do not share theirs.
  static std::size_t CacheIndex(std::int32_t matrix, std::int16_t field) {
    const auto spread = static_cast<std::uint32_t>(matrix) * 0x9E3779B1U >> 8;
    return (spread + static_cast<std::uint16_t>(field)) % kCacheEntries;
  }

  std::int32_t LookUpField(std::int32_t pt, std::int16_t f, platform::File& nm);
  void InsertFields(const Location& at, std::int16_t n, std::int16_t count, std::int16_t f);

  PathResolver& resolver_;
  CacheReset& caches_;
  const Ports& ports_;
  ErrorCode& error_;
  std::array<CacheEntry, kCacheEntries> cache_;
};

}  // namespace orv::storage
