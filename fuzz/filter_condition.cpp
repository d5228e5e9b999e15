// Any text as the condition of a view, plain, stacked on another view and with a cell step behind
// it.
#include "fuzz/support/entry.h"
#include "fuzz/support/sample_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& sample = orv::fuzz::SampleFile::Instance();
  const std::wstring condition = orv::fuzz::Text(data, size);
  std::wstring plain = sample.path() + L"/" + condition;
  std::wstring stacked = sample.path() + L"/(rec<5)/" + condition;
  std::wstring nested = plain + L"/[1,2]";
  sample.engine().Records(plain);
  sample.engine().Records(stacked);
  sample.engine().Records(nested);
  sample.Finish();
  return 0;
}
