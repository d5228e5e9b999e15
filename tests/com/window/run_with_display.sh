#!/usr/bin/env bash
# run_with_display.sh BUILD [OPTION...]: runs the window tests of a Windows build on a display of their own and
# leaves the pictures they ask for in BUILD/screenshots.
set -euo pipefail
build="$(cd "${1:?the build folder}" && pwd)"
pictures="$build/screenshots"
rm -rf "$pictures" && mkdir -p "$pictures"

# The first free display; -displayfd tells which.
announced="$(mktemp)"
Xvfb -displayfd 3 -screen 0 800x600x24 -nolisten tcp 3>"$announced" >/dev/null 2>&1 &
server=$!
photographer=""
stop() {
  [[ -z "$photographer" ]] || kill "$photographer" 2>/dev/null || true
  wineserver -k 2>/dev/null || true
  kill "$server" 2>/dev/null || true
  rm -f "$announced"
}
trap stop EXIT
for ((i = 0; i < 100; ++i)); do
  [[ -s "$announced" ]] && break
  sleep 0.1
done
DISPLAY=":$(<"$announced")"
export DISPLAY

# A desktop of Wine's own manages the windows: there is no window manager here.
wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null
wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 800x600 /f >/dev/null
wine regsvr32 /s "$build/bin/orvengine.dll"

take_pictures() {
  while sleep 0.1; do
    for request in "$pictures"/*.request; do
      [[ -e "$request" ]] || continue
      import -window root "${request%.request}.png"
      rm -f "$request"
    done
  done
}
take_pictures &
photographer=$!

ORV_PICTURES="$(winepath -w "$pictures")" timeout 300 wine "$build/bin/com_window_tests.exe" \
  --gtest_brief=1 "${@:2}"
