# ./dev build: builds everything; the command lands at build/release/bin/orv.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev build [--preset NAME] [TARGET...]

  --preset NAME  release (the default), debug, asan or fuzz
TEXT
}

preset=release
targets=()
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --preset) preset="${2:?--preset needs a name}"; shift ;;
    -*) bad_usage "build has no option $1" ;;
    *) targets+=("$1") ;;
  esac
  shift
done

packages="$packages_build"
if [[ "$preset" == fuzz ]]; then packages="$packages_fuzz"; fi
need_packages $packages
build_preset "$preset" ${targets[@]+"${targets[@]}"}
