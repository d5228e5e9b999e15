// What conversion needs of the engine above it.
#pragma once

#include <cstdint>
#include <string>

namespace orv::convert {

/// Writes properties of cell types.
class TypePropertyPort {
 public:
  virtual ~TypePropertyPort() = default;
  /// Stores property `prop` = `vlu` of the type of cell (`r`, `f`), as the member of this name
  /// does; a failure leaves its error code.
  virtual void SetTypeValue(const std::wstring& pth, std::int32_t r, std::int16_t f,
                            const std::string& prop, const std::string& vlu) = 0;
};

}  // namespace orv::convert
