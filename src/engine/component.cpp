#include "engine/component.h"

namespace orv::engine {

Component& Component::Instance() {
  static Component component;
  return component;
}

Component::Component() { storage.ports.dbase = &dbase_; }

}  // namespace orv::engine
