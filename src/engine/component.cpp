#include "engine/component.h"

namespace orv::engine {

Component& Component::Instance() {
  static Component component;
  return component;
}

Component::Component() : language(storage) {
  storage.ports.dbase = &dbase_;
  storage.ports.subscripts = &language;
  storage.ports.formulas = &language;
}

}  // namespace orv::engine
