# ./dev bench: builds and runs the benchmarks.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev bench [--json FILE] [--filter RE] [--repetitions N]
       ./dev bench --peers [--json FILE] [--only RE] [--repetitions N] [--records N]

  --json FILE      write the results to FILE as JSON as well
  --filter RE      run the benchmarks whose names match RE only
  --repetitions N  repeat each N times and report the median (5)
  --peers          run the same workloads on other engines beside ours instead; further options:
    --only RE        run the workloads whose names match RE only
    --records N      records of the table (1000000)
    --folder DIR     make the tables below DIR instead of the temporary directory
    --processor-time measure processor time instead of the wall's, on a busy machine
TEXT
}

json=""
repetitions=5
peers=""
own_options=()
peer_options=()
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --json) json="${2:?--json needs a file}"; shift ;;
    --repetitions) repetitions="${2:?--repetitions needs a number}"; shift ;;
    --filter) own_options+=("--benchmark_filter=${2:?--filter needs an expression}"); shift ;;
    --peers) peers=yes ;;
    --only | --records | --folder) peer_options+=("$1" "${2:?$1 needs a value}"); shift ;;
    --processor-time) peer_options+=("$1") ;;
    *) bad_usage "bench has no option $1" ;;
  esac
  shift
done

if [[ -n "$peers" ]]; then
  ((${#own_options[@]})) && bad_usage "--filter is for the engine's own benchmarks; with --peers use --only"
  if [[ -n "$json" ]]; then peer_options+=(--json "$json"); fi
  need_packages $packages_bench $packages_bench_peers
  configure_options=(-DORV_BENCH_PEERS=ON)
  build_preset release orv_bench_peers
  exec build/release/bin/orv_bench_peers --repetitions "$repetitions" \
    ${peer_options[@]+"${peer_options[@]}"}
fi

((${#peer_options[@]})) && bad_usage "${peer_options[0]} goes with --peers"
compgen -G 'bench/*.cpp' >/dev/null || die "bench: not yet"
if [[ -n "$json" ]]; then
  own_options+=("--benchmark_out=$json" --benchmark_out_format=json)
fi
need_packages $packages_bench
configure_options=(-DORV_BENCH_PEERS=OFF)
build_preset release orv_bench
build/release/bin/orv_bench --benchmark_repetitions="$repetitions" \
  --benchmark_report_aggregates_only=true ${own_options[@]+"${own_options[@]}"}
