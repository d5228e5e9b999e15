#include "engine/component.h"

namespace orv::engine {

Component& Component::Instance() {
  static Component component;
  return component;
}

Component::Component()
    : language(storage),
      search(storage),
      sort(storage),
      filterBuilder_(storage, language.evaluator(), filters) {
  storage.ports.dbase = &dbase_;
  storage.ports.filters = &filters;
  storage.ports.subscripts = &language;
  storage.ports.formulas = &language;
  filters.SetBuilder(&filterBuilder_);
}

}  // namespace orv::engine
