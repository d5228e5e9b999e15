# ./dev build-windows: builds for 64-bit Windows with mingw-w64; orvengine.dll lands in
# build/windows/bin.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev build-windows [TARGET...]
TEXT
}

case "${1:-}" in
  -h | --help) usage; exit 0 ;;
  -*) bad_usage "build-windows has no option $1" ;;
esac

need_packages $packages_windows
build_preset windows "${@:-orv_com}"
