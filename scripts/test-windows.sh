# ./dev test-windows: builds for Windows and runs the tests under Wine.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev test-windows [--32] [--com] [--no-windows]

  --32          the 32-bit build; needs a Wine that runs 32-bit programs (Debian's wine32)
  --com         the automation server's tests only, without the engine's unit tests
  --no-windows  without the tests that need a display
TEXT
}

preset=windows
prefix=wine
packages="$packages_test_windows"
targets=()
labels=()
display=yes
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --32) preset=windows32 prefix=wine32 packages="$packages_test_windows $packages_windows32" ;;
    --com) targets=(orv_com com_tests com_window_tests) labels=(-L '^com$') ;;
    --no-windows) display=no ;;
    *) bad_usage "test-windows has no option $1" ;;
  esac
  shift
done

need_packages $packages
# The scenario is played by the command of this system as well.
build_preset release orv_cli
build_preset "$preset" ${targets[@]+"${targets[@]}"}

use_wine "$prefix"
trap 'wineserver -k || true' EXIT
ctest_windows() { ctest --test-dir "build/$preset" --output-on-failure --no-tests=error "$@"; }
failed=()
ctest_windows ${labels[@]+"${labels[@]}"} || failed+=("tests without a display")
if [[ "$display" == yes ]]; then
  wineserver -k || true
  bash tests/com/window/run_with_display.sh "build/$preset" || failed+=("tests with windows")
fi
((${#failed[@]} == 0)) || die "failed under Wine: ${failed[*]}"
echo "== all Windows tests passed"
