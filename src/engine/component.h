// The engine behind every `Engine` object of the process.
#pragma once

#include <string>

#include "convert/field_conversion.h"
#include "engine/language_services.h"
#include "engine/room_services.h"
#include "exchange/dbase.h"
#include "query/filter_builder.h"
#include "query/filter_class.h"
#include "query/search.h"
#include "query/sort_class.h"
#include "storage/storage.h"

namespace orv::engine {

/// One a process: the storage engine and the services built on it, wired through the storage's
/// ports. Every `Engine` object is a handle on it.
class Component {
 public:
  static Component& Instance() { return instance_ != nullptr ? *instance_ : Create(); }

  storage::Storage storage;
  LanguageServices language;
  query::FilterClass filters;
  query::Search search;
  query::SortClass sort;
  RoomServices services;
  std::string cellText;  ///< room for the next text to be written

 private:
  Component();
  static Component& Create();

  static Component* instance_;  ///< nullptr until it is first asked for

  exchange::DbaseTables dbase_;
  query::FilterBuilder filterBuilder_;
  convert::FieldConversion conversion_;
};

}  // namespace orv::engine
