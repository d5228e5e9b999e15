#include "engine/component.h"

namespace orv::engine {

Component* Component::instance_ = nullptr;

Component& Component::Create() {
  static Component component;
  instance_ = &component;
  return component;
}

Component::Component()
    : language(storage),
      search(storage),
      sort(storage),
      services(storage, language),
      filterBuilder_(storage, language.evaluator(), filters),
      conversion_(storage, services) {
  storage.ports.dbase = &dbase_;
  storage.ports.filters = &filters;
  storage.ports.subscripts = &language;
  storage.ports.formulas = &language;
  filters.SetBuilder(&filterBuilder_);
  storage.ports.styles = &conversion_;
}

}  // namespace orv::engine
