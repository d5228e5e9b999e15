#include "storage/int_bytes.h"

namespace orv::storage {

std::string IntToBytes(std::int32_t value, platform::NumberedFiles& files) {
  platform::File& scratch = files.OpenScratch();
  scratch.WriteInt32(1, value);
  std::string bytes(scratch.View(1, sizeof value));
  files.Close(platform::NumberedFiles::kCreation);
  return bytes;
}

}  // namespace orv::storage
