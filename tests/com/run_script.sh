#!/usr/bin/env bash
# run_script.sh SCRIPT: runs a test script of the automation server under Wine's cscript, in a folder
# of its own. The script host ends with status 0 whatever happened, so the script itself has to say,
# in its last line, that it came to its end and that every check passed.
set -euo pipefail
script="${1:?a script}"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
output="$(wine cscript.exe //nologo "$(winepath -w "$script")" "$(winepath -w "$folder")" \
  "Привет, Ёлка №5" </dev/null | tr -d '\r')"
echo "$output"
last="$(tail -n 1 <<<"$output")"
[[ "$last" =~ ^all\ [1-9][0-9]*\ checks\ passed$ ]] || {
  echo "the script did not come to its end, or a check failed" >&2
  exit 1
}
