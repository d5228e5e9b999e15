#include "query/held_location.h"

namespace orv::query {

const storage::Location& HeldLocation::Resolve() {
  at_ = storage_.resolver.ResolvePath(path_);
  opening_ = at_.file == nullptr ? 0 : at_.file->opening();
  return at_;
}

bool HeldLocation::IsOpen() const {
  if (at_.file == nullptr) return false;
  const platform::File* const file = storage_.files.Find(at_.number);
  return file != nullptr && file->opening() == opening_;
}

}  // namespace orv::query
