// The storage engine: its parts, wired.
#pragma once

#include <string>

#include "platform/file.h"
#include "storage/cell_class.h"
#include "storage/error_code.h"
#include "storage/field_class.h"
#include "storage/open_file_table.h"
#include "storage/path_resolver.h"
#include "storage/ports.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// Everything below the rooms that query, convert and exchange. The engine has one; upper rooms
/// take it by reference and wire their ports into it.
class Storage final : public CacheReset {
 public:
  Storage();

  ErrorCode error;
  platform::NumberedFiles files;
  Ports ports;
  OpenFileTable openFiles;
  PathResolver resolver;
  TypeTables types;
  FieldClass fields;
  CellClass cells;

  void ResetCaches(int level) override;
  /// Drops views, type tables, open-file table and files. The path resolved last stays known.
  void CloseAll();
  /// Closes everything that the engine has open on this file and forgets what it knows of it; to be
  /// called before the file is deleted or written anew.
  void DropFile(const std::wstring& fileName);

  /// Closes and forgets the files that were cut short under their map or could not be read.
  void DropFaulted();

  /// Records of the location: of the view, the matrix or the dBASE III table; -1 for no location.
  /// Raises 9 for a matrix whose count is damaged, so that nobody loops over records that cannot
  /// be.
  std::int32_t RecordCount(const Location& at);
  /// The records that loops over the location go through: a damaged count is cut to what can be.
  std::int32_t ReadableRecordCount(const Location& at);
  /// Fields of the location, likewise.
  std::int32_t FieldCount(const Location& at);
  /// The record that record `r` of the location stands for: `r` itself, or the view's underlying
  /// one (-1 beyond the view). Numbers below 1 name no record of a view and stay as they are.
  std::int32_t UnderlyingRecord(const Location& at, std::int32_t r) const;
  /// The field that field `f` of the location stands for, 0 beyond the view.
  std::int16_t UnderlyingField(const Location& at, std::int16_t f) const;
};

}  // namespace orv::storage
