# ./dev bench: builds and runs the benchmarks.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev bench [--json FILE] [--filter RE] [--repetitions N] [--peers]

  --json FILE      write the results to FILE as JSON as well
  --filter RE      run the benchmarks whose names match RE only
  --repetitions N  repeat each N times and report the median (5)
  --peers          run the same workloads on other engines beside ours
TEXT
}

options=()
repetitions=5
configure_options=(-DORV_BENCH_PEERS=OFF)
packages="$packages_bench"
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --json) options+=("--benchmark_out=${2:?--json needs a file}" --benchmark_out_format=json); shift ;;
    --filter) options+=("--benchmark_filter=${2:?--filter needs an expression}"); shift ;;
    --repetitions) repetitions="${2:?--repetitions needs a number}"; shift ;;
    --peers)
      [[ -d bench/peers ]] || die "bench --peers: not yet"
      configure_options=(-DORV_BENCH_PEERS=ON)
      packages="$packages_bench $packages_bench_peers"
      ;;
    *) bad_usage "bench has no option $1" ;;
  esac
  shift
done

compgen -G 'bench/*.cpp' >/dev/null || die "bench: not yet"
need_packages $packages
build_preset release orv_bench
build/release/bin/orv_bench --benchmark_repetitions="$repetitions" \
  --benchmark_report_aggregates_only=true ${options[@]+"${options[@]}"}
