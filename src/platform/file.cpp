#include "platform/file.h"

#include <algorithm>
#include <bit>

namespace orv::platform {
namespace {

static_assert(std::endian::native == std::endian::little, "integers are stored as they stand");

constexpr std::int64_t kSmallestStep = std::int64_t{64} * 1024;
constexpr std::int64_t kGreatestStep = std::int64_t{16} * 1024 * 1024;
/// A growing file reserves an eighth of its length ahead, so that reserving costs little per byte.
constexpr std::int64_t kStepShare = 8;
/// New bytes are made ready by pieces: great ones, but not for a host that adds a cell or two.
constexpr std::int64_t kSmallPiece = std::int64_t{4} * 1024;
constexpr std::int64_t kGreatPiece = std::int64_t{64} * 1024;

std::uint64_t NextOpening() {
  static std::uint64_t last = 0;
  return ++last;
}

std::int64_t WithStep(std::int64_t length) {
  const std::int64_t step = std::clamp(length / kStepShare, kSmallestStep, kGreatestStep);
  return std::min(length + step, kGreatestLength);
}

}  // namespace

File::File(std::unique_ptr<Mapping> mapping)
    : mapping_(std::move(mapping)),
      base_(mapping_->base()),
      length_(mapping_->size()),
      mapped_(length_),
      ready_(length_),
      grownFrom_(length_),
      opening_(NextOpening()) {}

File::~File() { Settle(); }

void File::Settle() noexcept {
  if (extended_ && !Faulted()) mapping_->Trim(length_);
  extended_ = false;
  FollowMapping();
}

void File::FollowMapping() noexcept {
  base_ = mapping_->base();
  mapped_ = mapping_->size();
  length_ = std::min(length_, mapped_);
  ready_ = std::min(ready_, mapped_);
}

std::string_view File::ClippedView(std::int64_t position, std::int64_t count) const {
  if (position < 1 || position > length_ || count < 1) return {};
  const std::int64_t existing = std::min(count, length_ - (position - 1));
  return {base_ + position - 1, static_cast<std::size_t>(existing)};
}

std::uint32_t File::ClippedInteger(std::int64_t position, std::int64_t count) const {
  std::uint32_t value = 0;
  const std::string_view bytes = ClippedView(position, count);
  if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
  return value;
}

void File::Write(std::int64_t position, std::string_view bytes) {
  const bool own = bytes.data() >= base_ && bytes.data() < base_ + length_;
  const std::ptrdiff_t offset = own ? bytes.data() - base_ : 0;
  Prepare(position, static_cast<std::int64_t>(bytes.size()));
  if (bytes.empty()) return;
  std::memmove(base_ + position - 1, own ? base_ + offset : bytes.data(), bytes.size());
}

void File::Fill(std::int64_t position, std::int64_t count, char value) {
  Prepare(position, count);
  std::memset(base_ + position - 1, value, static_cast<std::size_t>(count));
}

void File::Move(std::int64_t from, std::int64_t to, std::int64_t count) {
  if (!Contains(from, count) || !Contains(to, count)) Raise(RunTimeError::kSubscript);
  std::memmove(base_ + to - 1, base_ + from - 1, static_cast<std::size_t>(count));
}

void File::Grow(std::int64_t position, std::int64_t count) {
  if (position < 1 || count < 0) Raise(RunTimeError::kSubscript);
  if (position - 1 > kGreatestLength - count) Raise(RunTimeError::kOverflow);
  const std::int64_t needed = position - 1 + count;
  if (needed > mapped_) ExtendTo(needed);
  if (needed > ready_) MakeReady(needed);
  length_ = needed;
}

void File::MakeReady(std::int64_t needed) {
  const bool growsOn = needed - grownFrom_ > kGreatPiece;
  const std::int64_t piece = growsOn ? kGreatPiece : kSmallPiece;
  const std::int64_t from = std::max(ready_, length_);
  ready_ = std::min((needed + piece - 1) / piece * piece, mapped_);
  mapping_->MakeReady(from, ready_ - from);
}

void File::ExtendTo(std::int64_t needed) {
  if (!extended_) grownFrom_ = length_;
  try {
    mapping_->Extend(WithStep(needed));
  } catch (const RunTimeFailure& failure) {
    FollowMapping();
    if (failure.number() != RunTimeError::kDiskFull) throw;
    mapping_->Extend(needed);  // near a full disk the step shrinks to what is needed
  }
  extended_ = true;
  FollowMapping();
}

void File::RefreshLength() {
  if (extended_) return;  // the file is ours to grow; its end is where we put it
  mapping_->Refresh();
  FollowMapping();
  length_ = mapped_;
}

File& NumberedFiles::Open(int number, const std::wstring& path) {
  Close(number);
  auto& slot = files_[static_cast<std::size_t>(number)];
  slot = std::make_unique<File>(MapFile(path));
  return *slot;
}

File& NumberedFiles::OpenScratch() {
  Close(kCreation);
  auto& slot = files_[kCreation];
  slot = std::make_unique<File>(MapScratchFile());
  return *slot;
}

void NumberedFiles::Retire(int number) {
  auto& slot = files_[static_cast<std::size_t>(number)];
  if (!slot) return;
  slot->Settle();
  retired_.push_back(std::move(slot));
}

void NumberedFiles::CloseOn(const FileIdentity& identity) {
  for (auto& file : files_) {
    if (file && file->Identity() == identity) file.reset();
  }
}

void NumberedFiles::CloseFaulted() {
  for (auto& file : files_) {
    if (file && file->Faulted()) file.reset();
  }
}

void NumberedFiles::CloseAll() {
  for (auto& file : files_) file.reset();
  ReleaseRetired();
}

}  // namespace orv::platform
