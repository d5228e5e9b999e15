# ./dev fuzz: builds the fuzz targets and runs each over its corpus.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev fuzz [TARGET]... [--seconds N] [--timeout N]

  TARGET       a source of fuzz/ without its ending, such as container_file; all by default
  --seconds N  how long each target runs, 60 by default; 0 runs its corpus only
  --timeout N  how many seconds one input may take, 20 by default; more on a busy machine

Each target runs under time and memory limits over its inputs in tests/fuzz_corpus and what earlier runs have
found (build/fuzz/inputs). Inputs that reach code that no committed one reaches are added to
tests/fuzz_corpus, at most 48 a target of at most 4 KiB each. A finding goes to build/fuzz/findings;
it is committed under a name that tells its story, with its fix. The status is 1 when there is one.
TEXT
}

seconds=60
timeout=20
targets=()
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --seconds)
      seconds="${2:-}"
      [[ "$seconds" =~ ^[0-9]+$ ]] || bad_usage "--seconds needs a number"
      shift
      ;;
    --timeout)
      timeout="${2:-}"
      [[ "$timeout" =~ ^[0-9]+$ ]] || bad_usage "--timeout needs a number"
      shift
      ;;
    -*) bad_usage "fuzz has no option $1" ;;
    *)
      [[ -f "fuzz/$1.cpp" ]] || bad_usage "there is no fuzz target $1"
      targets+=("$1")
      ;;
  esac
  shift
done
if ((${#targets[@]} == 0)); then
  mapfile -t targets < <(cd fuzz && ls -- *.cpp | sed 's/\.cpp$//')
fi

# Bounds for one input: seconds, and megabytes in all and at once.
limits=(-timeout="$timeout" -report_slow_units="$timeout" -rss_limit_mb=2048 -malloc_limit_mb=256 -max_len=4096)
most_inputs=48
# The value of a line "stat::NAME: VALUE" of libFuzzer's.
statistic() { sed -n "s/^stat::$2: *//p" "$1" | tail -n 1; }

# Adds to a corpus those inputs that reach lines which none of its own reaches.
add_inputs() {
  local program="$1" corpus="$2" found="$3" merged
  merged="$(mktemp -d)"
  cp "$corpus"/* "$merged"
  "$program" -merge=1 -use_counters=0 "${limits[@]}" "$merged" "$found" >/dev/null 2>&1 ||
    die "the inputs of $(basename "$corpus") could not be merged"
  local input
  for input in "$merged"/*; do
    (($(find "$corpus" -type f | wc -l) < most_inputs)) || break
    [[ -f "$corpus/$(basename "$input")" ]] || cp "$input" "$corpus"
  done
  rm -rf "$merged"
}

run_target() {
  local target="$1"
  local program="$PWD/build/fuzz/bin/fuzz_$target" corpus="$PWD/tests/fuzz_corpus/$target"
  local found="$PWD/build/fuzz/inputs/$target" log="$PWD/build/fuzz/$target.log" status=0
  mkdir -p "$found" build/fuzz/findings
  local time=(-max_total_time="$seconds")
  ((seconds > 0)) || time=(-runs=0)
  "$program" "${time[@]}" "${limits[@]}" -print_final_stats=1 \
    -artifact_prefix="$PWD/build/fuzz/findings/$target-" "$found" "$corpus" >"$log" 2>&1 || status=$?
  local ran
  ran="$(sed -n 's/^Done [0-9]* runs in \([0-9]*\) second.*/\1/p' "$log")"
  printf '%-18s %10s executions %6s s  %s\n' "$target" \
    "$(statistic "$log" number_of_executed_units)" "${ran:-?}" \
    "$( ((status == 0)) && echo "no finding" || echo "FINDING, see $log")"
  ((status == 0)) || return 1
  ((seconds == 0)) || add_inputs "$program" "$corpus" "$found"
}

need_packages $packages_fuzz
build_preset fuzz "${targets[@]/#/fuzz_}"
failed=()
for target in "${targets[@]}"; do
  run_target "$target" || failed+=("$target")
done
((${#failed[@]} == 0)) || die "findings in: ${failed[*]}"
echo "== no findings"
