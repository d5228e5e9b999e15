# ./dev build-windows: builds for Windows with mingw-w64; orvengine.dll lands in build/windows/bin.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev build-windows [--32] [TARGET...]

  --32  for 32-bit Windows; orvengine.dll lands in build/windows32/bin
TEXT
}

preset=windows
packages="$packages_windows"
targets=()
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --32) preset=windows32 packages="$packages_windows32" ;;
    -*) bad_usage "build-windows has no option $1" ;;
    *) targets+=("$1") ;;
  esac
  shift
done
((${#targets[@]})) || targets=(orv_com)

need_packages $packages
build_preset "$preset" "${targets[@]}"
