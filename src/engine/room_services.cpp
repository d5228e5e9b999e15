#include "engine/room_services.h"

#include "engine/creation.h"
#include "engine/titles.h"
#include "engine/type_properties.h"

namespace orv::engine {

std::wstring RoomServices::GetTitle(const std::wstring& pth) {
  return engine::GetTitle(storage_, pth);
}

std::optional<std::string> RoomServices::FindTypeValue(const std::wstring& pth, std::int32_t r,
                                                       std::int16_t f, const std::string& prop) {
  const std::int16_t before = storage_.error.value();
  std::string value = engine::GetTypeValue(storage_, pth, r, f, prop, false, language_);
  if (storage_.error.value() != storage::code::kNothingToRead) return value;
  storage_.error.Set(before);
  return std::nullopt;
}

void RoomServices::SetTypeValue(const std::wstring& pth, std::int32_t r, std::int16_t f,
                                const std::string& prop, const std::string& vlu) {
  engine::SetTypeValue(storage_, pth, r, f, prop, vlu);
}

void RoomServices::CmdNewOrvDB(const std::wstring& file, const std::wstring& mtxName) {
  engine::CmdNewOrvDB(storage_, file, mtxName);
}

}  // namespace orv::engine
