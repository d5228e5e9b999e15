// Any text run as a command.
#include "fuzz/support/entry.h"
#include "fuzz/support/sample_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& sample = orv::fuzz::SampleFile::Instance();
  std::wstring command = orv::fuzz::Text(data, size) + L";";
  std::wstring path = sample.path();
  std::int32_t record = 3;
  std::int16_t field = 3;
  sample.engine().ExecCmd(command, path, record, field);
  sample.Finish();
  return 0;
}
