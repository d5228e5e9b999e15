#!/usr/bin/env bash
# Shows that check_includes.sh accepts what is allowed and refuses each kind of offence, by running
# it on small trees made for the purpose.
set -euo pipefail
check="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_includes.sh"
tree="$(mktemp -d)"
trap 'rm -rf "$tree"' EXIT
failures=0

# Starts a new tree with one allowed include for every rule.
fresh_tree() {
  rm -rf "${tree:?}"/*
  add include/orv/value.h '#include <cstdint>'
  add include/orv/engine.h '#include "orv/value.h"'
  add src/platform/file.h '#include <sys/mman.h>'
  add src/storage/path.h '#include "platform/file.h"'
  add src/storage/cell.h '#include "storage/path.h"'
  add src/command/scanner.h '#include "orv/value.h"'
  add src/dialogs/progress.h '#include "orv/dialogs.h"'
  add src/query/filter.h '#include "storage/cell.h"'
  add src/query/filter.h '#include "command/scanner.h"'
  add src/query/filter.h '#include "dialogs/progress.h"'
  add src/inspect/walk.h '#include "storage/cell.h"'
  add src/engine/engine.cpp '#include "orv/engine.h"'
  add src/engine/engine.cpp '#include "inspect/walk.h"'
  add src/engine/engine.cpp '#include "query/filter.h"'
}

add() {
  mkdir -p "$tree/$(dirname "$1")"
  printf '%s\n' "$2" >>"$tree/$1"
}

report() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

# refuses WHAT FILE LINE: with LINE added to FILE the check must fail and name that line.
refuses() {
  fresh_tree
  add "$2" "$3"
  local output
  if output="$(bash "$check" "$tree")"; then
    report "$1 was accepted"
  elif ! grep -qF "$2" <<<"$output"; then
    report "$1: the offending file is not named: $output"
  fi
}

fresh_tree
output="$(bash "$check" "$tree")" || report "an orderly tree was refused: $output"

refuses "an upward include" src/platform/file.h '#include "storage/path.h"'
refuses "an upward include with blanks" src/storage/cell.h '  #  include  "engine/members.h"'
refuses "a sideways include" src/query/filter.h '#include "convert/style.h"'
refuses "an inspection that knows the exchange" src/inspect/rescue.h '#include "exchange/dbase.h"'
refuses "a sideways include of services" src/dialogs/progress.h '#include "command/scanner.h"'
refuses "a service including a user of it" src/command/scanner.h '#include "query/filter.h"'
refuses "an include of a host" src/engine/engine.cpp '#include "cli/main.h"'
refuses "an include without its folder" src/storage/cell.h '#include "path.h"'
refuses "a relative include" src/storage/cell.h '#include "../storage/path.h"'
refuses "a detour" src/query/filter.h '#include "storage/../convert/style.h"'
refuses "a system header above the platform" src/storage/cell.h '#include <unistd.h>'
refuses "another library" src/query/filter.h '#include <nlohmann/json.hpp>'
refuses "a room in angle brackets" src/storage/cell.h '#include <query/filter.h>'
refuses "a public header that shows the inside" include/orv/value.h '#include "storage/cell.h"'
refuses "the platform knowing the public headers" src/platform/file.h '#include "orv/value.h"'
refuses "the Engine object below src/engine" src/query/filter.h '#include "orv/engine.h"'
refuses "a circle" src/storage/path.h '#include "storage/cell.h"'
refuses "a header that includes itself" src/storage/path.h '#include "storage/path.h"'
refuses "a folder that is no room" src/common/text.h '#include <string>'

((failures == 0)) && echo "all offences are caught"
