// The POSIX file mapping.
//
// Every file is mapped once, over the full range that the format can address: pages behind the
// file's end are not touched, and when the file grows they are simply there. The base therefore
// never moves.
//
// A page that another program cut off raises SIGBUS when it is touched. A handler in front of the
// host's own puts a zero page there and marks the mapping; any other fault goes on to the host's
// handler.
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include "platform/file_limit.h"
#include "platform/file_names.h"
#include "platform/mapping.h"
#include "platform/os_error.h"

namespace orv::platform {
namespace {

constexpr std::size_t kMapBytes = std::size_t{1} << 31;
constexpr int kGreatestMaps = 64;

/// The maps that the fault handler knows. Plain atomics: a signal handler may take no lock.
struct MapEntry {
  std::atomic<char*> base = nullptr;
  std::atomic<bool> faulted = false;
};
std::array<MapEntry, kGreatestMaps> maps;
std::atomic<bool> anyFault = false;
struct sigaction hostHandler;
int openMaps = 0;

MapEntry* FindMap(const char* address) {
  for (MapEntry& entry : maps) {
    const char* base = entry.base.load();
    if (base != nullptr && address >= base && address < base + kMapBytes) return &entry;
  }
  return nullptr;
}

/// Hands a fault that is not ours to whoever had the signal before us.
void PassOn(int signal, siginfo_t* info, void* context) {
  if ((hostHandler.sa_flags & SA_SIGINFO) != 0 && hostHandler.sa_sigaction != nullptr) {
    hostHandler.sa_sigaction(signal, info, context);
    return;
  }
  if (hostHandler.sa_handler != SIG_DFL && hostHandler.sa_handler != SIG_IGN) {
    hostHandler.sa_handler(signal);
    return;
  }
  sigaction(signal, &hostHandler,
            nullptr);  // the instruction faults again, with the default effect
}

void OnBusError(int signal, siginfo_t* info, void* context) {
  MapEntry* entry = FindMap(static_cast<char*>(info->si_addr));
  if (entry == nullptr) {
    PassOn(signal, info, context);
    return;
  }
  const auto pageBytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  char* base = entry->base.load();
  const auto offset = static_cast<std::size_t>(static_cast<char*>(info->si_addr) - base);
  void* zeroPage = mmap(base + offset / pageBytes * pageBytes, pageBytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
  if (zeroPage == MAP_FAILED) {
    PassOn(signal, info, context);
    return;
  }
  entry->faulted = true;
  anyFault = true;
}

void InstallFaultHandler() {
  struct sigaction ours = {};
  ours.sa_sigaction = OnBusError;
  ours.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigemptyset(&ours.sa_mask);
  sigaction(SIGBUS, &ours, &hostHandler);
}

/// Gives the signal back, unless somebody has taken it from us in the meantime.
void RemoveFaultHandler() {
  struct sigaction present = {};
  sigaction(SIGBUS, nullptr, &present);
  if (present.sa_sigaction == OnBusError) sigaction(SIGBUS, &hostHandler, nullptr);
}

MapEntry& EnterMap(char* base) {
  for (MapEntry& entry : maps) {
    if (entry.base.load() != nullptr) continue;
    entry.faulted = false;
    entry.base = base;
    if (openMaps++ == 0) InstallFaultHandler();
    return entry;
  }
  Raise(RunTimeError::kTooManyFiles);
}

void LeaveMap(MapEntry& entry) {
  entry.base = nullptr;
  if (--openMaps == 0) RemoveFaultHandler();
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {
    if (number_ < 0) RaiseOsError();
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(number_); }
  int number() const { return number_; }

 private:
  int number_;
};

class PosixMapping final : public Mapping {
 public:
  explicit PosixMapping(int descriptor) : file_(descriptor) {
    Refresh();
    void* base = mmap(nullptr, kMapBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE,
                      file_.number(), 0);
    if (base == MAP_FAILED) RaiseOsError();
    base_ = static_cast<char*>(base);
    try {
      entry_ = &EnterMap(base_);
    } catch (...) {
      munmap(base_, kMapBytes);
      throw;
    }
  }

  ~PosixMapping() override {
    LeaveMap(*entry_);
    munmap(base_, kMapBytes);
  }

  FileIdentity Identity() const override { return identity_; }

  void Refresh() override {
    struct stat status = {};
    if (fstat(file_.number(), &status) != 0) RaiseOsError();
    if (!S_ISREG(status.st_mode)) Raise(RunTimeError::kPermissionDenied);
    size_ = std::min<std::int64_t>(status.st_size, kGreatestLength);
    identity_ = {status.st_dev, status.st_ino};
  }

  void Extend(std::int64_t size) override {
    // A cut inside the last page raises no signal; growing would put zeros where the bytes were.
    if (FileLength() < size_) {
      entry_->faulted = true;
      anyFault = true;
      Raise(RunTimeError::kDeviceIo);
    }
    const int failure = Reserve(size);
    if (failure == 0) {
      size_ = size;
      return;
    }
    Trim(size_);
    Raise(FromOsError(failure));
  }

  /// A page written by a call is taken into the cache with its neighbours, and its first touch
  /// finds it there; a page first met by a touch costs four times as much.
  void MakeReady(std::int64_t offset, std::int64_t count) noexcept override {
    if (FileLength() < size_) return;  // cut short by another program: it is not made long again
    while (count > 0) {
      const ssize_t written = WriteZeros(offset, count);
      if (written <= 0) return;
      offset += written;
      count -= written;
    }
  }

  void Trim(std::int64_t size) noexcept override {
    if (FileLength() < size) return;  // cut short by another program: it is not made long again
    if (ftruncate(file_.number(), size) == 0) size_ = size;
  }

  bool Faulted() const noexcept override { return entry_->faulted; }

 private:
  /// The length that the file has now, -1 when it cannot be told.
  std::int64_t FileLength() const noexcept {
    struct stat status = {};
    return fstat(file_.number(), &status) == 0 ? status.st_size : -1;
  }

  /// Writes zeros by one call, perhaps fewer than asked for; returns how many.
  ssize_t WriteZeros(std::int64_t offset, std::int64_t count) const noexcept {
    constexpr std::size_t kPieceBytes = 4096;
    constexpr std::size_t kPieces = 16;
    static std::array<char, kPieceBytes> zeros;
    std::array<iovec, kPieces> pieces = {};
    std::size_t used = 0;
    for (; used < kPieces && count > 0; ++used) {
      const std::size_t bytes = std::min(static_cast<std::size_t>(count), kPieceBytes);
      pieces[used] = {zeros.data(), bytes};
      count -= static_cast<std::int64_t>(bytes);
    }
    return pwritev(file_.number(), pieces.data(), static_cast<int>(used), offset);
  }

  int Reserve(std::int64_t size) const {
    if (size > FileSizeLimit()) return ENOSPC;
    for (;;) {
      const int failure = posix_fallocate(file_.number(), size_, size - size_);
      if (failure != EINTR) return failure;
    }
  }

  Descriptor file_;
  FileIdentity identity_;
  MapEntry* entry_ = nullptr;
};

}  // namespace

std::unique_ptr<Mapping> MapFile(const std::wstring& path) {
  constexpr int kMode = 0666;
  const std::string name = NativeName(path);
  const int descriptor =
      open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kMode);
  // A missing file is created, so what is missing here is a directory on the way.
  if (descriptor < 0 && errno == ENOENT) Raise(RunTimeError::kPathNotFound);
  return std::make_unique<PosixMapping>(descriptor);
}

std::unique_ptr<Mapping> MapScratchFile() {
  std::string name = (std::filesystem::temp_directory_path() / "orv-temp-XXXXXX").string();
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor >= 0) unlink(name.c_str());
  return std::make_unique<PosixMapping>(descriptor);
}

bool TakeMapFault() noexcept {
  if (!anyFault.load(std::memory_order_relaxed)) return false;
  return anyFault.exchange(false);
}

}  // namespace orv::platform
