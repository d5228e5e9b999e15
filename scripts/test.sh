# ./dev test: builds and runs the tests, in release and with the sanitizers.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev test [--preset NAME]... [--long] [FILTER]

  --preset NAME  run this preset only (may be repeated); release and asan are the default
  --long         run the long tier: more random sequences, more damaged files, bigger tables
  FILTER         a GoogleTest filter, such as 'ChainTest.*:TextTest.*-*.Slow*'; also accepted
                 as --gtest_filter=FILTER
TEXT
}

# Turns a list of GoogleTest patterns joined by ":" into the regular expression of the same names.
patterns_to_regex() {
  local regex="$1"
  regex="$(sed -e 's/[][\.^$+(){}|]/\\&/g' -e 's/\*/.*/g' -e 's/?/./g' -e 's/:/|/g' <<<"$regex")"
  echo "^($regex)\$"
}

presets=()
ctest_options=()
filter=""
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --preset) presets+=("${2:?--preset needs a name}"); shift ;;
    --long) export ORV_LONG_TESTS=1 RC_PARAMS="${RC_PARAMS:-max_success=1000}" ;;
    --gtest_filter=*) filter="${1#*=}" ;;
    -*) bad_usage "test has no option $1" ;;
    *) filter="$1" ;;
  esac
  shift
done
((${#presets[@]})) || presets=(release asan)

if [[ -n "$filter" ]]; then
  wanted="${filter%%-*}"
  ctest_options+=(-R "$(patterns_to_regex "${wanted:-*}")")
  [[ "$filter" == *-* ]] && ctest_options+=(-E "$(patterns_to_regex "${filter#*-}")")
fi

need_packages $packages_test
failed=()
for preset in "${presets[@]}"; do
  echo "== $preset"
  build_preset "$preset"
  ctest --preset "$preset" --parallel "$(nproc)" --progress \
    ${ctest_options[@]+"${ctest_options[@]}"} || failed+=("$preset")
done
((${#failed[@]} == 0)) || die "tests failed in: ${failed[*]}"
echo "== all tests passed in: ${presets[*]}"
