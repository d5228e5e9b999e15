# ./dev coverage: what the test suite reaches of src/, in lines and branches.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev coverage [--no-run] [--uncovered FILE]

  --no-run          reports the last run again, without building and running
  --uncovered FILE  prints the lines of this source that were not reached, instead of the report

Builds the preset coverage with clang, runs the fast tier of the suite and prints llvm-cov's
table of src/. The status is 1 below 95 % of the lines or 85 % of the branches. What only other systems
compile (*_windows.cpp) is not in the build and not counted.
TEXT
}

least_lines=95
least_branches=85
run=yes
uncovered=""
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --no-run) run=no ;;
    --uncovered) uncovered="${2:?--uncovered needs a file}"; run=no; shift ;;
    *) bad_usage "coverage has no option $1" ;;
  esac
  shift
done

folder="$PWD/build/coverage"
profile="$folder/suite.profdata"

# The newest of a tool's versions, which Debian keeps under names with a number as well.
llvm_tool() {
  command -v "$1" || ls /usr/lib/llvm-*/bin/"$1" | sort -V | tail -n 1
}

# Whole folders of tests in one process each: a process a test would spend its time on profiles.
run_suite() {
  local program failed=()
  rm -f "$folder"/*.profraw
  # Processes of one program add up in one file, the command's among them.
  export LLVM_PROFILE_FILE="$folder/%m.profraw"
  for program in "$folder"/bin/*_tests; do
    echo "-- $(basename "$program")"
    "$program" --gtest_brief=1 >"$program.log" 2>&1 || {
      grep -F FAILED "$program.log" >&2 || tail -n 20 "$program.log" >&2
      failed+=("$(basename "$program")")
    }
  done
  for program in "$folder"/bin/replay_*; do
    [[ "$program" == *.log ]] && continue
    "$program" "tests/fuzz_corpus/$(basename "$program" | sed 's/^replay_//')" >"$program.log" ||
      failed+=("$(basename "$program")")
  done
  ((${#failed[@]} == 0)) || die "tests failed in: ${failed[*]}"
  "$(llvm_tool llvm-profdata)" merge -sparse -o "$profile" "$folder"/*.profraw
}

# llvm-cov over everything that the suite runs, for the sources of src/. Those are told by what they
# are not: the names in the programs depend on how the compiler was called.
cov() {
  local what="$1" objects=() program
  shift
  for program in "$folder"/bin/*_tests "$folder"/bin/replay_* "$folder"/bin/orv; do
    [[ "$program" == *.log ]] || objects+=(-object "$program")
  done
  "$(llvm_tool llvm-cov)" "$what" "${objects[@]:1}" -instr-profile="$profile" \
    -ignore-filename-regex='(^|/)(tests|fuzz|hosts|include|usr)/' "$@"
}

if [[ "$run" == yes ]]; then
  need_packages $packages_coverage
  build_preset coverage
  run_suite
fi
[[ -f "$profile" ]] || die "nothing has been measured yet"

if [[ -n "$uncovered" ]]; then
  # A line's count stands behind its number; a condition of which one side never came follows it.
  cov show -show-branches=count -show-instantiations=false |
    awk -v file="$uncovered:" '
      /^[^ ].*:$/ { wanted = substr($0, length($0) - length(file) + 1) == file }
      wanted && (/^ *[0-9]+\| *0\|/ || /Branch .*(True: 0,|False: 0\])/)'
  exit 0
fi

report="$(cov report -show-region-summary=false)"
echo "$report"
awk -v lines="$least_lines" -v branches="$least_branches" '
  $1 == "TOTAL" {
    sub("%", "", $7); sub("%", "", $10)
    found = 1
    if ($7 + 0 < lines || $10 + 0 < branches) {
      printf "dev: %s %% of the lines and %s %% of the branches; %s and %s are wanted\n", $7, $10, lines, branches > "/dev/stderr"
      exit 1
    }
    printf "== %s %% of the lines, %s %% of the branches\n", $7, $10
  }
  END { if (!found) exit 1 }' <<<"$report"
