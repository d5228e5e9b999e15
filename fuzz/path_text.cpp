// Any text as the steps of a path.
#include "fuzz/support/entry.h"
#include "fuzz/support/sample_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& sample = orv::fuzz::SampleFile::Instance();
  std::wstring path = sample.path() + L"/" + orv::fuzz::Text(data, size);
  std::int32_t record = 1;
  std::int16_t field = 1;
  orv::Boolean isMatrix{};
  orv::Boolean formula = orv::Boolean::kTrue;
  sample.engine().Records(path);
  sample.engine().GetCellValue(path, record, field, isMatrix, formula);
  sample.Finish();
  return 0;
}
