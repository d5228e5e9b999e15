# ./dev bench: builds and runs the benchmarks.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev bench [--json FILE] [--filter RE] [--repetitions N]
       ./dev bench --peers [--json FILE] [--only RE] [--repetitions N] [--records N]
       ./dev bench --scale [--json FILE] [--svg FOLDER] [--repetitions N] [--records N]
       ./dev bench --memory [--records N]

  --json FILE      write the results to FILE as JSON as well
  --filter RE      run the benchmarks whose names match RE only
  --repetitions N  repeat each N times and report the median (5)

  --peers          run the same workloads on other engines beside ours instead
  --scale          measure how costs grow with the table and with paths instead
  --memory         measure the memory that the engine takes instead; status 1 when a bound is
                   exceeded

Options of these three:
  --only RE        run the workloads whose names match RE only (--peers)
  --svg FOLDER     draw the curves into FOLDER (--scale)
  --records N      records of the greatest table (1000000, with --scale 4000000)
  --folder DIR     make the tables below DIR instead of the temporary directory
  --processor-time measure processor time instead of the wall's, on a busy machine (--peers,
                   --scale)
  --tables FILE    put the tables into FILE between its lines "<!-- ./dev bench --scale -->" (or
                   --memory) and "<!-- end -->" as well (--scale, --memory)
TEXT
}

kind=own
json=""
svg=""
tables=""
repetitions=""
only_own=()
options=()
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --json) json="${2:?--json needs a file}"; shift ;;
    --svg) svg="${2:?--svg needs a folder}"; shift ;;
    --tables) tables="${2:?--tables needs a file}"; shift ;;
    --repetitions) repetitions="${2:?--repetitions needs a number}"; shift ;;
    --filter) only_own=("--benchmark_filter=${2:?--filter needs an expression}"); shift ;;
    --peers | --scale | --memory) kind="${1#--}" ;;
    --only | --records | --folder) options+=("$1" "${2:?$1 needs a value}"); shift ;;
    --processor-time) options+=("$1") ;;
    *) bad_usage "bench has no option $1" ;;
  esac
  shift
done

# Builds the program of this kind of benchmark with a configuration's options.
build_bench() {
  need_packages $packages_bench
  configure_options=("$1")
  build_preset release "$2"
}

# Puts what comes in between the marking lines of a file.
replace_section() {
  local file="$1" first="<!-- ./dev bench --$kind -->" text
  text="$(mktemp)"
  awk -v first="$first" '
    NR == FNR { section = section $0 "\n"; next }
    $0 == first { print; printf "\n%s", section; inside = 1 }
    $0 == "<!-- end -->" { inside = 0 }
    !inside && $0 != first
  ' - "$file" >"$text"
  cat "$text" >"$file"
  rm -f "$text"
}

# Runs the program and shows its tables; they go into the file of --tables as well.
run_for_tables() {
  local output status=0
  output="$(mktemp)"
  "$@" | tee "$output" || status=$?
  if [[ -n "$tables" ]] && ((status == 0)); then replace_section "$tables" <"$output"; fi
  rm -f "$output"
  return "$status"
}

run_own() {
  ((${#options[@]} == 0)) || bad_usage "${options[0]} goes with --peers, --scale or --memory"
  if [[ -n "$json" ]]; then
    only_own+=("--benchmark_out=$json" --benchmark_out_format=json)
  fi
  build_bench -DORV_BENCH_PEERS=OFF orv_bench
  build/release/bin/orv_bench --benchmark_repetitions="${repetitions:-5}" \
    --benchmark_report_aggregates_only=true ${only_own[@]+"${only_own[@]}"}
}

run_peers() {
  if [[ -n "$json" ]]; then options+=(--json "$json"); fi
  need_packages $packages_bench_peers
  build_bench -DORV_BENCH_PEERS=ON orv_bench_peers
  build/release/bin/orv_bench_peers --repetitions "${repetitions:-5}" \
    ${options[@]+"${options[@]}"}
}

run_scale() {
  local results="$json"
  if [[ -n "$svg" ]]; then need_packages $packages_bench_figures; fi
  build_bench -DORV_BENCH_PEERS=OFF orv_bench_scale
  if [[ -z "$results" ]]; then results="$(mktemp)"; fi
  run_for_tables build/release/bin/orv_bench_scale --json "$results" \
    --repetitions "${repetitions:-5}" ${options[@]+"${options[@]}"}
  if [[ -n "$svg" ]]; then python3 scripts/bench_figures.py "$results" "$svg"; fi
  if [[ -z "$json" ]]; then rm -f "$results"; fi
}

run_memory() {
  [[ -z "$json" && -z "$repetitions" ]] || bad_usage "--memory has neither --json nor --repetitions"
  build_bench -DORV_BENCH_PEERS=OFF orv_bench_memory
  run_for_tables build/release/bin/orv_bench_memory ${options[@]+"${options[@]}"}
}

[[ "$kind" == own || ${#only_own[@]} == 0 ]] ||
  bad_usage "--filter is for the engine's own benchmarks; with --peers use --only"
[[ "$kind" == scale || -z "$svg" ]] || bad_usage "--svg goes with --scale"
if [[ -n "$tables" ]]; then
  [[ "$kind" == scale || "$kind" == memory ]] || bad_usage "--tables goes with --scale or --memory"
  for line in "<!-- ./dev bench --$kind -->" "<!-- end -->"; do
    grep -qxF -e "$line" "$tables" || bad_usage "$tables has no line $line"
  done
fi
"run_$kind"
