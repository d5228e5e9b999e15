#!/usr/bin/env bash
# check_includes.sh ROOT: fails, naming each offending line, when an include of the core
#   - points upwards or sideways: a folder of src/ includes only itself and the folders below it,
#   - lacks its folder: "storage/path.h", never "path.h" or "../storage/path.h",
#   - is neither of this project nor of the standard library; system headers are for src/platform,
#   - makes a public header depend on anything but public headers and the standard library,
#   - brings the Engine object itself into a folder below src/engine,
#   - or closes a circle of files.
set -euo pipefail
cd "${1:?the root of the project}"

mapfile -t files < <(find src include -name '*.h' -o -name '*.cpp' | LC_ALL=C sort)
((${#files[@]})) || {
  echo "no sources under src/ and include/" >&2
  exit 1
}

awk '
  BEGIN {
    below["platform"] = " platform "
    below["storage"] = below["platform"] "storage "
    below["command"] = below["storage"] "command "
    below["dialogs"] = below["storage"] "dialogs "
    services = below["command"] "dialogs "
    below["exchange"] = services "exchange "
    below["query"] = services "query "
    below["convert"] = services "convert "
    below["inspect"] = services "inspect "
    below["engine"] = services "exchange query convert inspect engine "
  }

  function Fail(why) {
    printf "%s:%d: %s: %s\n", FILENAME, FNR, why, $0
    failures++
  }

  # The folder that a file belongs to: a room of src/, or "orv" for the public headers.
  function Room(file, parts) {
    split(file, parts, "/")
    return parts[2]
  }

  function CheckSystem(room, name) {
    if (name ~ /^[a-z_0-9]+$/ || room == "platform") return
    Fail("only src/platform uses system headers")
  }

  function CheckOwn(room, name, target) {
    target = name
    if (!sub(/\/.*/, "", target) || name ~ /(^|\/)\.\.?\//) {
      Fail("an include names its folder")
    } else if (target == "orv") {
      if (room == "platform") Fail("src/platform knows nothing above it")
      if (name == "orv/engine.h" && room != "engine") Fail("the Engine object is above " room)
    } else if (room == "orv") {
      Fail("a public header includes only public headers")
    } else if (index(below[room], " " target " ") == 0) {
      Fail("src/" room " must not include " target)
    }
  }

  # Depth-first search; `trail` shows the way to the file that is being visited.
  function Visit(file, trail, list, count, i) {
    if (state[file] == "done") return
    if (state[file] == "open") {
      printf "%s: a circle of includes:%s %s\n", file, trail, file
      failures++
      return
    }
    state[file] = "open"
    count = split(includes[file], list, "\n")
    for (i = 1; i < count; i++) Visit(list[i], trail " " file)
    state[file] = "done"
  }

  FNR == 1 {
    room = Room(FILENAME)
    known[FILENAME] = 1
    if (!(room in below) && room != "orv") {
      printf "%s: %s is no folder of the core\n", FILENAME, room
      failures++
    }
  }

  /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
    name = $0
    sub(/^[ \t]*#[ \t]*include[ \t]*/, "", name)
    quote = substr(name, 1, 1)
    sub(/^./, "", name)
    sub(/[>"].*/, "", name)
    if (quote == "<") {
      CheckSystem(room, name)
    } else {
      CheckOwn(room, name)
      folder = name ~ /^orv\// ? "include/" : "src/"
      includes[FILENAME] = includes[FILENAME] folder name "\n"
    }
  }

  END {
    for (file in known) Visit(file, "")
    exit failures > 0
  }
' "${files[@]}"
