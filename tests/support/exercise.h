// Every member called on one file, sound or damaged.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "support/driver.h"

namespace orv::test {

/// Calls the members on the driver's file with the numbers that the file names and a little beyond
/// them. What the members answer is of no interest here; that they answer is, and that they leave
/// an error code that exists.
class Exercise {
 public:
  /// How far records and fields are walked, whatever the file says that it holds.
  struct Limits {
    int records = 40;
    int fields = 8;
    /// A matrix that claims more cells is neither converted, sorted nor exported: these take all.
    std::int64_t cells = std::numeric_limits<std::int64_t>::max();
  };

  explicit Exercise(Driver& db) : Exercise(db, Limits()) {}
  Exercise(Driver& db, Limits limits) : db_(db), limits_(limits) {}

  /// All members that read.
  void Read(const std::wstring& steps);
  /// The members that write cells, titles, type properties and structure.
  void Write(const std::wstring& steps);
  /// Every conversion between storage styles, of every field.
  void Convert(const std::wstring& steps);
  /// A sort, and an export of each kind into the driver's folder.
  void Export(const std::wstring& steps);

  /// Error codes that no member may leave, one a line; empty when all is well.
  const std::string& Problems() const { return problems_; }

 private:
  void CheckCode();
  bool ClaimsTooManyCells(const std::wstring& steps);
  void ReadCells(const std::wstring& steps, int f, int records);
  void ReadDataType(const std::wstring& steps, std::int32_t r, int f);
  void ReadFieldSize(const std::wstring& steps, int f);
  void ReadBlock(const std::wstring& steps);
  void Find(const std::wstring& steps);
  void RunCommands(const std::wstring& steps);
  void WriteCells(const std::wstring& steps, int f);

  Driver& db_;
  Limits limits_;
  std::string problems_;
};

}  // namespace orv::test
