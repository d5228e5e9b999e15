// What the rooms of conversion and export need of the engine, in one place.
#pragma once

#include "convert/ports.h"
#include "engine/language_services.h"
#include "exchange/ports.h"

namespace orv::engine {

class RoomServices final : public convert::TypePropertyPort, public exchange::ExportServices {
 public:
  RoomServices(storage::Storage& storage, LanguageServices& language)
      : storage_(storage), language_(language) {}

  std::wstring GetTitle(const std::wstring& pth) override;
  std::optional<std::string> FindTypeValue(const std::wstring& pth, std::int32_t r, std::int16_t f,
                                           const std::string& prop) override;
  void SetTypeValue(const std::wstring& pth, std::int32_t r, std::int16_t f,
                    const std::string& prop, const std::string& vlu) override;
  void CmdNewOrvDB(const std::wstring& file, const std::wstring& mtxName) override;

 private:
  storage::Storage& storage_;
  LanguageServices& language_;
};

}  // namespace orv::engine
