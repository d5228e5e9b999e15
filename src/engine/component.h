// The engine behind every `Engine` object of the process.
#pragma once

#include "engine/language_services.h"
#include "exchange/dbase.h"
#include "storage/storage.h"

namespace orv::engine {

/// One a process: the storage engine and the services built on it, wired through the storage's
/// ports. Every `Engine` object is a handle on it.
class Component {
 public:
  static Component& Instance();

  storage::Storage storage;
  LanguageServices language;

 private:
  Component();

  exchange::DbaseTables dbase_;
};

}  // namespace orv::engine
