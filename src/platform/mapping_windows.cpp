// The Windows file mapping.
//
// A view covers exactly the pages that the file has, so a file that grows or is cut gets a new
// view. Each mapping reserves the whole range that the format can address and puts its views at the
// start of it: the base stays where it is, and what callers still read of a file survives its
// growth. Only where addresses are scarce (32-bit hosts), or when another thread snatches the range
// in the moment between two views, does the base move.
//
// No other program can cut a file that is mapped. A page can still be lost with its device (a
// network drive, a memory stick): a handler for such faults puts zero pages in the place of the
// view and marks the mapping; any other fault goes on to the host's handlers.
#include <algorithm>
#include <array>
#include <atomic>
#include <string>

#include "platform/mapping.h"
#include "platform/os_error.h"
#include "platform/windows_api.h"

namespace orv::platform {
namespace {

constexpr std::size_t kRangeBytes = std::size_t{1} << 31;
constexpr std::size_t kGranularity = std::size_t{64} * 1024;
constexpr std::size_t kGreatestMaps = 64;

/// The views that the fault handler knows. Plain atomics: a fault may come at any moment.
struct ViewEntry {
  std::atomic<bool> taken = false;
  std::atomic<char*> base = nullptr;
  std::atomic<std::size_t> bytes = 0;
  std::atomic<bool> faulted = false;
};
std::array<ViewEntry, kGreatestMaps> views;
std::atomic<bool> anyFault = false;
PVOID faultHandler = nullptr;
int openMaps = 0;

ViewEntry* FindView(const char* address) {
  for (ViewEntry& entry : views) {
    const char* base = entry.base.load();
    if (base != nullptr && address >= base && address < base + entry.bytes.load()) return &entry;
  }
  return nullptr;
}

// The second word of both faults' information is the address that was touched.
LONG CALLBACK OnFault(EXCEPTION_POINTERS* fault) {
  constexpr DWORD kAddressWord = 1;
  const EXCEPTION_RECORD& record = *fault->ExceptionRecord;
  const bool lostPage = record.ExceptionCode == static_cast<DWORD>(EXCEPTION_IN_PAGE_ERROR) ||
                        record.ExceptionCode == static_cast<DWORD>(EXCEPTION_ACCESS_VIOLATION);
  if (!lostPage || record.NumberParameters <= kAddressWord) return EXCEPTION_CONTINUE_SEARCH;
  ViewEntry* entry =
      FindView(reinterpret_cast<const char*>(record.ExceptionInformation[kAddressWord]));
  if (entry == nullptr) return EXCEPTION_CONTINUE_SEARCH;
  char* base = entry->base.load();
  UnmapViewOfFile(base);
  if (VirtualAlloc(base, entry->bytes.load(), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE) ==
      nullptr) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  entry->faulted = true;
  anyFault = true;
  return EXCEPTION_CONTINUE_EXECUTION;
}

ViewEntry& EnterMap() {
  for (ViewEntry& entry : views) {
    if (entry.taken.load()) continue;
    entry.faulted = false;
    entry.taken = true;
    constexpr ULONG kFirst = 1;
    if (openMaps++ == 0) faultHandler = AddVectoredExceptionHandler(kFirst, OnFault);
    return entry;
  }
  Raise(RunTimeError::kTooManyFiles);
}

void LeaveMap(ViewEntry& entry) {
  entry.taken = false;
  if (--openMaps == 0) RemoveVectoredExceptionHandler(faultHandler);
}

/// One view at a time at the start of a reserved range.
class ViewRange {
 public:
  ViewRange() : entry_(EnterMap()) {
    // Taken and given back: from here on only its address counts.
    char* base = static_cast<char*>(VirtualAlloc(nullptr, kRangeBytes, MEM_RESERVE, PAGE_NOACCESS));
    if (base == nullptr) return;
    VirtualFree(base, 0, MEM_RELEASE);
    wanted_ = base;
    ReserveRest(0);
  }
  ~ViewRange() {
    Unmap();
    GiveBackRest();
    LeaveMap(entry_);
  }
  ViewRange(const ViewRange&) = delete;
  ViewRange& operator=(const ViewRange&) = delete;

  char* base() const { return entry_.base.load(); }
  bool Faulted() const { return entry_.faulted.load(); }

  /// Maps the first `bytes` bytes of the section in the place of the present view.
  bool Map(HANDLE section, std::size_t bytes) {
    Unmap();
    GiveBackRest();
    void* view = MapViewOfFileEx(section, FILE_MAP_WRITE, 0, 0, bytes, wanted_);
    if (view == nullptr) view = MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, bytes);
    if (view == nullptr) return false;
    entry_.bytes = bytes;
    entry_.base = static_cast<char*>(view);
    if (view == wanted_) ReserveRest(bytes);
    return true;
  }

  void Unmap() {
    char* view = entry_.base.exchange(nullptr);
    if (view == nullptr) return;
    if (entry_.faulted) {
      VirtualFree(view, 0, MEM_RELEASE);
    } else {
      UnmapViewOfFile(view);
    }
  }

 private:
  void ReserveRest(std::size_t used) {
    const std::size_t start = (used + kGranularity - 1) / kGranularity * kGranularity;
    if (start >= kRangeBytes) return;
    rest_ = VirtualAlloc(wanted_ + start, kRangeBytes - start, MEM_RESERVE, PAGE_NOACCESS);
  }
  void GiveBackRest() {
    if (rest_ != nullptr) VirtualFree(rest_, 0, MEM_RELEASE);
    rest_ = nullptr;
  }

  ViewEntry& entry_;
  char* wanted_ = nullptr;
  void* rest_ = nullptr;
};

/// What an empty file's base points to: there is no view without a byte.
char nothing = 0;

class WindowsMapping final : public Mapping {
 public:
  explicit WindowsMapping(Handle file) : file_(std::move(file)) {
    if (!file_.IsValid()) RaiseOsError();
    if (GetFileType(file_.get()) != FILE_TYPE_DISK) Raise(RunTimeError::kPermissionDenied);
    if (!MapAll(FileLength())) RaiseOsError();
  }

  FileIdentity Identity() const override {
    BY_HANDLE_FILE_INFORMATION about = {};
    if (!GetFileInformationByHandle(file_.get(), &about)) RaiseOsError();
    return IdentityFrom(about);
  }

  void Refresh() override {
    if (range_.Faulted()) return;
    const std::int64_t length = FileLength();
    if (length != size_ && !MapAll(length)) RaiseOsError();
  }

  void Extend(std::int64_t size) override {
    if (range_.Faulted()) Raise(RunTimeError::kDeviceIo);
    if (!SetLength(size)) RaiseOsError();
    const std::int64_t before = size_;
    if (MapAll(size)) return;
    const auto failure = static_cast<int>(GetLastError());
    Trim(before);
    Raise(FromOsError(failure));
  }

  void Trim(std::int64_t size) noexcept override {
    if (range_.Faulted()) return;
    // A file cannot be cut while it is mapped.
    const std::int64_t before = size_;
    range_.Unmap();
    MapAll(SetLength(size) ? size : before);
  }

  bool Faulted() const noexcept override { return range_.Faulted(); }

 private:
  std::int64_t FileLength() const {
    LARGE_INTEGER length = {};
    if (!GetFileSizeEx(file_.get(), &length)) RaiseOsError();
    return std::min<std::int64_t>(length.QuadPart, kGreatestLength);
  }

  bool SetLength(std::int64_t size) const {
    FILE_END_OF_FILE_INFO end = {};
    end.EndOfFile.QuadPart = size;
    return SetFileInformationByHandle(file_.get(), FileEndOfFileInfo, &end, sizeof end) != 0;
  }

  /// Maps the first `size` bytes of the file; without success the mapping is empty.
  bool MapAll(std::int64_t size) noexcept {
    base_ = &nothing;
    size_ = 0;
    if (size == 0) {
      range_.Unmap();
      return true;
    }
    const Handle section(CreateFileMappingW(file_.get(), nullptr, PAGE_READWRITE, 0, 0, nullptr));
    if (!section.IsValid() || !range_.Map(section.get(), static_cast<std::size_t>(size))) {
      return false;
    }
    base_ = range_.base();
    size_ = size;
    return true;
  }

  Handle file_;
  ViewRange range_;
};

std::wstring TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  if (length == 0) RaiseOsError();
  return {folder.data(), length};
}

}  // namespace

std::unique_ptr<Mapping> MapFile(const std::wstring& path) {
  // Others may read and write beside us, as with the tables that several programs share. A program
  // that shares nothing locks us out with a sharing violation.
  Handle file(CreateFileW(LongName(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  return std::make_unique<WindowsMapping>(std::move(file));
}

std::unique_ptr<Mapping> MapScratchFile() {
  static unsigned scratchFiles = 0;
  const std::wstring name =
      TemporaryFolder() + L"orv-temp-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
      std::to_wstring(GetTickCount64()) + L"-" + std::to_wstring(++scratchFiles);
  // Only a new file will do, shared with nobody and gone when it is closed.
  Handle file(CreateFileW(LongName(name).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                          CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                          nullptr));
  return std::make_unique<WindowsMapping>(std::move(file));
}

bool TakeMapFault() noexcept {
  if (!anyFault.load(std::memory_order_relaxed)) return false;
  return anyFault.exchange(false);
}

}  // namespace orv::platform
