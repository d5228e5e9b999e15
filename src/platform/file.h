// A file addressed by 1-based byte positions, and the numbers under which files are open.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fault_points.h"
#include "platform/mapping.h"
#include "platform/run_time_error.h"

namespace orv::platform {

/// What an upper room remembers of one opening of a file; it dies with the opening.
class FileMemory {
 public:
  virtual ~FileMemory() = default;
};

/// An open file. Position 1 is its first byte. Reading is reading memory and writing is storing
/// into it, so what a call has written survives the death of the process; the file grows in steps
/// and is cut to its true length when it is closed. Integers are little-endian.
///
/// Reading never fails: bytes that the file does not have read as zeros, or are missing from a
/// view. Writing below position 1 raises 9; growing beyond position 2147483647 raises 6 and a full
/// disk 61, both before a byte is written.
class File {
 public:
  explicit File(std::unique_ptr<Mapping> mapping);
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// A number that no other opening in this process has or will have.
  std::uint64_t opening() const { return opening_; }
  FileIdentity Identity() const { return mapping_->Identity(); }
  /// The true length in bytes.
  std::int64_t Length() const { return length_; }
  /// Whether the whole range lies inside the file.
  bool Contains(std::int64_t position, std::int64_t count) const {
    return position >= 1 && count >= 0 && count <= length_ - (position - 1);
  }

  /// The bytes of the range that exist. The view is good until the next write to this file.
  std::string_view View(std::int64_t position, std::int64_t count) const {
    if (Contains(position, count)) return {base_ + position - 1, static_cast<std::size_t>(count)};
    return ClippedView(position, count);
  }
  std::uint8_t ByteAt(std::int64_t position) const { return IntegerAt<std::uint8_t>(position); }
  std::int16_t Int16At(std::int64_t position) const { return IntegerAt<std::int16_t>(position); }
  std::int32_t Int32At(std::int64_t position) const { return IntegerAt<std::int32_t>(position); }

  /// Says that the bytes there will be read soon, so that memory can fetch them meanwhile. A guess:
  /// any position will do, also one outside the file. Always inlined: the compiler drops calls of
  /// functions that do nothing else.
  [[gnu::always_inline]] void Announce(std::int64_t position) const {
    if (Contains(position, 1)) __builtin_prefetch(base_ + position - 1);
  }

  /// Whether the view points into this file.
  bool Owns(std::string_view view) const {
    return view.data() >= base_ && view.data() <= base_ + length_;
  }

  /// Stores the bytes; a gap between the file's end and `position` is filled with zeros. The bytes
  /// may be a view of this file.
  void Write(std::int64_t position, std::string_view bytes);
  void WriteByte(std::int64_t position, std::uint8_t value) { WriteInteger(position, value); }
  void WriteInt16(std::int64_t position, std::int16_t value) { WriteInteger(position, value); }
  void WriteInt32(std::int64_t position, std::int32_t value) { WriteInteger(position, value); }
  void WriteZeros(std::int64_t position, std::int64_t count) { Fill(position, count, 0); }
  /// Makes the file reach to the end of the range; the bytes that it gains are zeros.
  void Reach(std::int64_t position, std::int64_t count) { Prepare(position, count); }
  /// Has `store` put the bytes of the range in place; it is given where the first of them goes.
  template <typename Store>
  void Compose(std::int64_t position, std::int64_t count, Store store) {
    Prepare(position, count);
    store(base_ + position - 1);
  }
  void Fill(std::int64_t position, std::int64_t count, char value);
  /// Moves `count` existing bytes within the file; the ranges may overlap.
  void Move(std::int64_t from, std::int64_t to, std::int64_t count);

  /// A place for what the room above remembers of this opening; empty until that room fills it.
  std::unique_ptr<FileMemory>& memory() { return memory_; }

  /// Takes notice of a length that another program has changed.
  void RefreshLength();
  /// Cuts the file to its true length now; the next growth extends it again.
  void Settle() noexcept;
  bool Faulted() const noexcept { return mapping_->Faulted(); }

 private:
  template <typename Integer>
  Integer IntegerAt(std::int64_t position) const {
    Integer value = 0;
    // Nothing here may make the compiler keep the value in memory: reads follow one another.
    if (!Contains(position, sizeof value)) [[unlikely]] {
      return static_cast<Integer>(ClippedInteger(position, sizeof value));
    }
    std::memcpy(&value, base_ + position - 1, sizeof value);
    return value;
  }
  template <typename Integer>
  void WriteInteger(std::int64_t position, Integer value) {
    Prepare(position, sizeof value);
    std::memcpy(base_ + position - 1, &value, sizeof value);
  }

  std::string_view ClippedView(std::int64_t position, std::int64_t count) const;
  std::uint32_t ClippedInteger(std::int64_t position, std::int64_t count) const;
  /// Makes the range writable, growing the file when it ends before the range does.
  void Prepare(std::int64_t position, std::int64_t count) {
    if (!Contains(position, count)) [[unlikely]] {
      Grow(position, count);
    }
    BeforeStore();
  }
  /// Every store into the map comes after the ones before it: what a killed process leaves must be
  /// a beginning of what it wrote, so the compiler may not exchange stores either.
  static void BeforeStore() {
    std::atomic_signal_fence(std::memory_order_release);
    PassFaultPoint(FileOperation::kStore);
  }
  void Grow(std::int64_t position, std::int64_t count);
  /// Extends the mapping, so that it has at least `needed` bytes.
  void ExtendTo(std::int64_t needed);
  void ExtendMapping(std::int64_t size);
  /// Prepares the bytes up to `needed`, and some more, for being touched for the first time.
  void MakeReady(std::int64_t needed);
  /// Takes notice of where the mapping lies after a change of its size.
  void FollowMapping() noexcept;

  std::unique_ptr<Mapping> mapping_;
  std::unique_ptr<FileMemory> memory_;
  char* base_;
  std::int64_t length_;
  std::int64_t mapped_;     ///< bytes that can be touched: the length and the room behind it
  std::int64_t ready_;      ///< of these, those whose first touch was prepared or is past
  std::int64_t grownFrom_;  ///< the length before the first growth
  std::uint64_t opening_;
  bool extended_ = false;
};

/// The files of an engine, known by number: 1 to 10 for the open-file table, 255 for creation and
/// scratch.
class NumberedFiles {
 public:
  static constexpr int kCreation = 255;

  /// Opens the file under a number, creating it when it is missing. A number still open is closed
  /// first.
  File& Open(int number, const std::wstring& path);
  /// Opens the private scratch file under number 255.
  File& OpenScratch();
  /// The file of a number, or nullptr when the number is not open.
  File* Find(int number) const { return files_[static_cast<std::size_t>(number)].get(); }
  /// The file of a number; raises 52 when the number is not open.
  File& At(int number) const {
    File* file = Find(number);
    if (file == nullptr) Raise(RunTimeError::kBadFileNumber);
    return *file;
  }
  /// Closes a number; harmless when it is not open.
  void Close(int number) { files_[static_cast<std::size_t>(number)].reset(); }
  /// Closes a number, but keeps the file object alive for the operation that may still be reading
  /// it, until `ReleaseRetired`.
  void Retire(int number);
  void ReleaseRetired() { retired_.clear(); }
  /// Closes every number that is open on this file.
  void CloseOn(const FileIdentity& identity);
  /// Closes every number whose file was cut short under it or could not be read.
  void CloseFaulted();
  void CloseAll();

 private:
  std::array<std::unique_ptr<File>, kCreation + 1> files_;
  std::vector<std::unique_ptr<File>> retired_;
};

}  // namespace orv::platform
