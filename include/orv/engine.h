// The automation object.
#pragma once

#include <cstdint>
#include <string>

#include "orv/text_matrix.h"
#include "orv/value.h"

namespace orv {

/// The one object that a host creates and calls. Every object of a process is a light handle on the
/// same engine: error code, open files, caches and filters are shared. One thread only.
///
/// Conventions of all members:
/// - Every parameter is passed by reference and may be overwritten where the member says so.
/// - `Pth`, `p`, `Mtx`, `toMtx` are matrix paths: a file name in double quotes, then steps such as
///   "/[2,1]" (the matrix nested in record 2, field 1), "/#" (the property matrix) or "/" and a
///   filter condition. docs/members.md describes them.
/// - Records and fields count from 1; record 0 of a field is its name.
/// - No member throws. A failure leaves its number in the error code, which `ErrorCode` reads;
/// members
///   that resolve a path clear it first.
class Engine {
 public:
  Engine();

  /// Does nothing.
  void UnloadServer();
  /// Checks, loads and sorts field `f` in memory behind a progress dialog; stores nothing.
  void SortData(std::wstring& Pth, std::int16_t& f);
  /// Width of field `f` of a dBASE III table, or empty when the path does not resolve.
  Value dBASEFldSize(std::wstring& Pth, std::int16_t& f);
  /// 1 for a container file, 2 for a dBASE III table, 0 for anything else.
  std::int16_t IsORVorDBF(std::wstring& Pth);
  /// Puts a new top-level matrix above the present one, which becomes its cell (1, 1). Closes all
  /// files.
  void InsFirstLvlMtx(std::wstring& Pth);
  /// Title of the matrix; empty for a dBASE III table and on error.
  std::wstring GetTitle(std::wstring& Pth);
  /// Exports the matrix to `file` through the export dialog: `FileType` 1 a container, else text.
  void SaveMtxAs(std::wstring& Pth, std::wstring& file, Boolean& WithProp, std::int16_t& FileType);
  /// Creates a matrix in cell (`r`, `f`), or the property matrix when `r` is -2. An empty `MtxName`
  /// takes the cell's text and receives it.
  void PutMatrix(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::wstring& MtxName);
  /// Number of records of the matrix or view, or -1.
  std::int32_t Records(std::wstring& p);
  /// Number of fields of the matrix or view, or -1.
  std::int32_t Fields(std::wstring& p);
  /// Writes text `v` into cell (`Rec`, `Fld`); records below 1 except -1 name the field.
  void SetCellValue(std::wstring& v, std::wstring& p, std::int32_t& Rec, std::int16_t& Fld);
  /// Always the empty text; changes nothing.
  std::wstring Cmd(std::wstring& a, std::int16_t& Tp);
  /// Inserts `Number` empty records so that the first gets number `row`.
  void CmdAddRecord(std::wstring& Pth, std::int32_t& Number, std::int32_t& row);
  /// Text of cell (`Rec`, `Fld`); `isMtx` receives whether it holds a matrix; with `Frml` the
  /// formula of the cell's type is evaluated.
  std::wstring GetCellValue(std::wstring& p, std::int32_t& Rec, std::int16_t& Fld, Boolean& isMtx,
                            Boolean& Frml);
  /// First record that matches, or -1. `Fld` and `Register` may be overwritten.
  std::int32_t MtxFindFirst(std::wstring& Pth, std::int32_t& Rec, std::int16_t& Fld,
                            std::wstring& Vlu, std::int16_t& Region, Boolean& inCell,
                            std::int16_t& Direct, Boolean& Register);
  /// Record holding the least text of field `Col`, or -1.
  std::int32_t MtxFindMin(std::wstring& Pth, std::int16_t& Col);
  /// Record holding the greatest text of field `Col`, or -1.
  std::int32_t MtxFindMax(std::wstring& Pth, std::int16_t& Col);
  /// Stores property `Prop` = `Vlu` of the type of cell (`r`, `f`).
  void SetTypeValue(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::wstring& Prop,
                    std::wstring& Vlu);
  /// Property `Prop` of the type of cell (`r`, `f`); with `Frml` a command value is run.
  std::wstring GetTypeValue(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::wstring& Prop,
                            Boolean& Frml);
  /// Switches the length form of cell (`r`, `f`) to `b` (1 short, 4 long). Always the empty value.
  Value ReBit(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::int16_t& b);
  /// Creates container file `file` with one matrix titled `MtxName`.
  void CmdNewOrvDB(std::wstring& file, std::wstring& MtxName);
  /// Converts field `f` to the storage style given; closes all files.
  void SetFldStyle(std::wstring& p, std::int16_t& f, std::int16_t& FreeSize, std::int16_t& cellsize,
                   Boolean& FixedType, Boolean& Unique, std::int16_t& DataType);
  /// Fills the five style parameters of field `f`.
  void GetFldStyle(std::wstring& p, std::int16_t& f, std::int16_t& FreeSize, std::int16_t& cellsize,
                   Boolean& FixedType, Boolean& Unique, std::int16_t& DataType);
  /// Inserts `NumOfFields` new fields so that the first gets number `f`.
  void CmdAddFld(std::wstring& Pth, std::int16_t& NumOfFields, std::int16_t& f);
  /// Deletes field `f`.
  void CmdDelFld(std::wstring& Pth, std::int16_t& f);
  /// Runs command text `a` in the context of matrix `Mtx`, record `Rec`, field `Fld`.
  Value ExecCmd(std::wstring& a, std::wstring& Mtx, std::int32_t& Rec, std::int16_t& Fld);
  /// Cell code of cell (`r`, `f`): type number, length form and matrix flag in one word.
  std::int16_t GetID(std::wstring& Pth, std::int32_t& r, std::int16_t& f);
  /// Data type code of the cell's value.
  std::int16_t GetCellDataType(std::wstring& Pth, std::int32_t& r, std::int16_t& f);
  /// Writes the title of the matrix.
  void SetTitle(std::wstring& Vlu, std::wstring& Pth);
  /// Does nothing.
  void CopyCell(std::wstring& Mtx, std::int32_t& r1, std::int16_t& f1, std::wstring& toMtx,
                std::int32_t& r2, std::int16_t& f2, Boolean& WhatToCopy, Boolean& WithNested);
  /// Fills `m` with the texts of records `r1` to `r2`; `r2` receives the first record beyond the
  /// last.
  void ValueMatrix(TextMatrix& m, std::wstring& Pth, std::int32_t& r1, std::int32_t& r2,
                   Boolean& Frml);
  /// The error code of the last operation, a 16-bit integer. Reading does not clear it.
  Value ErrorCode();
  /// Drops filters and open files. The path resolved last stays known.
  void CloseAll();
  /// Does nothing.
  void gt();
};

}  // namespace orv
