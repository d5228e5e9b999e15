# ./dev test: builds and runs the tests, in release and with the sanitizers.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev test [--preset NAME]... [--long] [--valgrind] [FILTER]

  --preset NAME  run this preset only (may be repeated); release and asan are the default
  --long         run the long tier: more random sequences, more damaged files, bigger tables
  --valgrind     runs the core's folders of the release build under valgrind's memcheck instead
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

# What memcheck is for: the folders that test src/.
core_folders=(platform storage command query convert exchange inspect engine tables)
# What cannot run under it. Faults of maps are repaired by a signal handler that maps a page where
# the faulting instruction reads; memcheck starts the instruction again without it, for ever. Sixty
# maps of two gigabytes are more than it has addresses for. The others take hundreds of thousands of
# calls, or ask how large the machine's own stack is.
not_under_valgrind="*MoreMapsThanThereIsRoomFor*:MappingFaultTest.*:CutFileTest.*:*DamagedFile*:*DamagedTypes*:*Random*:*SystemCall*:\
StackRoomTest.*:*SmallStack*:*FormulaLimitsTest*:*LimitsTest.Parentheses*:*LimitsTest.TextsOfAMegabyte*:\
FullFileTest.WithTooLittleRoom*:*AMatrixOf32767Fields*:*TheGreatestFieldNumber*:*AClaimOf*:*ClaimAMillion*"

run_under_valgrind() {
  local folder program failed=()
  need_packages valgrind
  build_preset release "${core_folders[@]/%/_tests}"
  export RC_PARAMS="${RC_PARAMS:-max_success=5}"
  for folder in "${core_folders[@]}"; do
    program="build/release/bin/${folder}_tests"
    echo "-- $folder"
    # A file is mapped over two gigabytes, most of which are never touched.
    valgrind --quiet --suppressions=scripts/valgrind.supp --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite \
      "$program" --gtest_brief=1 --gtest_filter="${1:-*}-$not_under_valgrind" || failed+=("$folder")
  done
  ((${#failed[@]} == 0)) || die "failed under valgrind: ${failed[*]}"
  echo "== nothing found by valgrind"
}

valgrind=no
presets=()
ctest_options=()
filter=""
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --preset) presets+=("${2:?--preset needs a name}"); shift ;;
    --long) export ORV_LONG_TESTS=1 RC_PARAMS="${RC_PARAMS:-max_success=1000}" ;;
    --valgrind) valgrind=yes ;;
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
if [[ "$valgrind" == yes ]]; then
  run_under_valgrind "$filter"
  exit 0
fi
failed=()
for preset in "${presets[@]}"; do
  echo "== $preset"
  build_preset "$preset"
  ctest --preset "$preset" --parallel "$(nproc)" --progress \
    ${ctest_options[@]+"${ctest_options[@]}"} || failed+=("$preset")
done
((${#failed[@]} == 0)) || die "tests failed in: ${failed[*]}"
echo "== all tests passed in: ${presets[*]}"
