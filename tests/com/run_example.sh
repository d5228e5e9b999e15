#!/usr/bin/env bash
# run_example.sh SCRIPT: runs an example in a folder of its own and compares what it says with
# the text file beside it.
set -euo pipefail
script="${1:?a script}"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
wine cscript.exe //nologo "$(winepath -w "$script")" "$(winepath -w "$folder")" </dev/null |
  tr -d '\r' >"$folder/output.txt"
diff -u "${script%.vbs}.expected.txt" "$folder/output.txt"
