// What export needs of the engine above it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orv::exchange {

/// Titles, type properties and new files. Failures leave their error code.
class ExportServices {
 public:
  virtual ~ExportServices() = default;
  virtual std::wstring GetTitle(const std::wstring& pth) = 0;
  /// The property's value, or nothing where there is none; that leaves the error code as it was.
  virtual std::optional<std::string> FindTypeValue(const std::wstring& pth, std::int32_t r,
                                                   std::int16_t f, const std::string& prop) = 0;
  virtual void SetTypeValue(const std::wstring& pth, std::int32_t r, std::int16_t f,
                            const std::string& prop, const std::string& vlu) = 0;
  /// Creates a container file with one matrix.
  virtual void CmdNewOrvDB(const std::wstring& file, const std::wstring& mtxName) = 0;
};

}  // namespace orv::exchange
