// The engine behind every `Engine` object of the process.
#pragma once

#include "engine/type_properties.h"
#include "exchange/dbase.h"
#include "storage/storage.h"

namespace orv::engine {

/// One a process: the storage engine and the services built on it, wired through the storage's ports. Every
/// `Engine` object is a handle on it.
class Component {
 public:
  static Component& Instance();

  storage::Storage storage;

  /// Runs command values of type properties.
  const CommandRunner& commandRunner() const { return commandRunner_; }

 private:
  Component();

  CommandRunner commandRunner_;

  exchange::DbaseTables dbase_;
};

}  // namespace orv::engine
