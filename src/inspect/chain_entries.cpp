#include "inspect/chain_entries.h"

namespace orv::inspect {

storage::ChainRun ChainEntries::Run(std::int64_t k) {
  try {
    return storage::FindChainRun(file_, start_, k, width_);
  } catch (const platform::RunTimeFailure&) {
    broken_ = true;
    return {};
  }
}

std::int64_t ChainEntries::Count() {
  std::int64_t count = 0;
  for (auto run = Run(1); run.count > 0; run = Run(count + 1)) count += run.count;
  return count;
}

std::int64_t ChainEntries::LastUsed() {
  std::int64_t last = 0;
  std::int64_t k = 1;
  for (auto run = Run(k); run.count > 0; run = Run(k)) {
    for (std::int64_t i = 0; i < run.count; ++i, ++k) {
      if (file_.Int32At(run.position + i * width_) != 0) last = k;
    }
  }
  return last;
}

}  // namespace orv::inspect
