#include "convert/storage_analysis.h"

#include <algorithm>
#include <cmath>

#include "dialogs/cancel_request.h"

namespace orv::convert {

bool AnalyseField(dialogs::CompressForm& form, storage::FieldReader& reader, std::int32_t records,
                  Analysis& analysis) {
  dialogs::CancelRequest::Clear();
  analysis.numbers.reserve(static_cast<std::size_t>(records));
  form.SetRange(0, records);
  for (std::int32_t r = 1; r <= records; ++r) {
    form.SetValue(r);
    form.ServiceEvents();
    if (dialogs::CompressForm::CancelRequested()) return false;
    analysis.numbers.push_back(analysis.values.Add(reader.Read(r)));
  }
  return true;
}

std::int32_t Efficiency(std::int32_t records, std::int32_t distinct) {
  constexpr std::int32_t kWhole = 100;
  if (distinct < 1) return 0;
  // nearbyint takes halves to the even neighbour, as the figure needs it.
  const double ratio = std::nearbyint(static_cast<double>(records) / distinct);
  return kWhole - kWhole / std::max(static_cast<std::int32_t>(ratio), std::int32_t{1});
}

}  // namespace orv::convert
