#!/usr/bin/env bash
# run_scenario.sh ORV: plays scenario.jsonl through the scripting host of this system and, call by
# call, through the automation server; then compares every file that the two have left, byte by byte.
set -euo pipefail
orv="${1:?the orv command}"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir "$work/host" "$work/com"

# An at sign stands for the folder.
sed "s|@|$work/host|g" "$here/scenario.jsonl" >"$work/requests.jsonl"
"$orv" host <"$work/requests.jsonl" >"$work/replies.jsonl"
# The script host reads UTF-16.
for file in requests replies; do
  { printf '\xff\xfe' && iconv -f UTF-8 -t UTF-16LE "$work/$file.jsonl"; } >"$work/$file.txt"
done

output="$(wine cscript.exe //nologo "$(winepath -w "$here/scenario.js")" "$(winepath -w "$work")" \
  "$work/host" </dev/null | tr -d '\r')"
echo "$output"
[[ "$(tail -n 1 <<<"$output")" =~ ^all\ [1-9][0-9]*\ calls\ agree$ ]]

count="$(find "$work/host" -type f | wc -l)"
((count > 0)) || {
  echo "the scenario left no file" >&2
  exit 1
}
diff -r "$work/host" "$work/com"
echo "$count files are identical"
