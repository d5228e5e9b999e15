#include "inspect/rescue_copy.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace orv::inspect {

namespace {

constexpr std::int64_t kGrowthFactor = 16;
constexpr std::int64_t kGrowthBytes = std::int64_t{16} << 20;

}  // namespace

RescueCopy::RescueCopy(platform::File& target, std::int64_t sourceBytes, RescueLog& log)
    : target_(target),
      log_(log),
      batch_(target),
      greatest_(std::min(sourceBytes * kGrowthFactor + kGrowthBytes, platform::kGreatestLength)) {}

bool RescueCopy::HasRoom(std::int64_t bytes) {
  if (target_.Length() + bytes <= greatest_) return true;
  if (!full_) {
    log_.LoseOfFile("structures are reached so often that the copy was ended at " +
                    std::to_string(target_.Length()) + " bytes");
  }
  full_ = true;
  return false;
}

void RescueCopy::AddText(std::int64_t slot, std::int16_t code, std::string_view text) {
  if (!HasRoom(std::ssize(text))) return;
  batch_.Add(slot, code, text);
  log_.CountCells(1);
}

}  // namespace orv::inspect
