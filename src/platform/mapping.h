// One operating-system file, open for reading and writing and mapped into memory.
//
// This is the whole of what the file layer asks of the operating system; the other files of this
// folder are free of it, or stand beside it (file_names, clock).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace orv::platform {

/// What tells two files apart whatever they are called.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t file = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// The greatest length of a file: positions are 32-bit.
inline constexpr std::int64_t kGreatestLength = 2147483647;

/// Owns the open file and its map. All failures are raised as run-time errors, mapped from the
/// operating system's in one table.
class Mapping {
 public:
  virtual ~Mapping() = default;

  /// First mapped byte. May move when the mapping is extended.
  char* base() const { return base_; }
  /// Bytes of the file that can be touched through the map.
  std::int64_t size() const { return size_; }

  virtual FileIdentity Identity() const = 0;
  /// Asks the operating system for the file's length: another program may have changed it.
  virtual void Refresh() = 0;
  /// Makes the file `size` bytes long with its disk blocks reserved; the new bytes are zero. After
  /// a failure (disk full: 61) the file is as it was.
  virtual void Extend(std::int64_t size) = 0;
  /// May make the first touch of the zero bytes from `offset` on cheap, bytes that nothing was ever
  /// stored in. They stay zeros. Never fails: what could not be done costs time alone.
  virtual void MakeReady(std::int64_t /*offset*/, std::int64_t /*count*/) noexcept {}
  /// Cuts the file to `size` bytes. Never fails: a file that cannot be cut keeps zero bytes at its
  /// end.
  virtual void Trim(std::int64_t size) noexcept = 0;
  /// Whether an access met a page that the file does not have any more (another program cut it
  /// short) or that could not be read. Such a page reads as zeros and keeps nothing.
  virtual bool Faulted() const noexcept = 0;

 protected:
  Mapping() = default;
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  char* base_ = nullptr;
  std::int64_t size_ = 0;
};

/// Opens the file, creating it empty when it is missing.
std::unique_ptr<Mapping> MapFile(const std::wstring& path);
/// Creates a nameless private file in the temporary directory, never through a link.
std::unique_ptr<Mapping> MapScratchFile();
/// Whether an access faulted in any map since the last call.
bool TakeMapFault() noexcept;

}  // namespace orv::platform
