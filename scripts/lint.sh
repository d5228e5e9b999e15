# ./dev lint: formatting, the direction of includes, static analysis.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev lint [--fast]

  --fast  formatting and includes only, without clang-tidy and cppcheck
TEXT
}

fast=no
while (($#)); do
  case "$1" in
    -h | --help) usage; exit 0 ;;
    --fast) fast=yes ;;
    *) bad_usage "lint has no option $1" ;;
  esac
  shift
done

failed=()
check() {
  local name="$1"
  shift
  echo "== $name"
  "$@" || failed+=("$name")
}

check_format() { cxx_files | xargs -r clang-format --dry-run -Werror; }

# The sources that the preset compiles, without the tests: GoogleTest's macros drown the findings.
tidy_sources() {
  cxx_files | grep -E '^(src|hosts/cli)/.*\.cpp$' | grep -v '_windows\.cpp$'
}

# clang-tidy also counts what it hides in system headers; those lines say nothing.
check_tidy() {
  tidy_sources | xargs -r -n 4 -P "$(nproc)" clang-tidy --quiet -p build/debug \
    2> >(grep -Ev '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$' >&2)
}

check_cppcheck() {
  cppcheck --quiet --std=c++20 --language=c++ --enable=warning,performance,portability \
    --inline-suppr --suppress=missingIncludeSystem --error-exitcode=1 -j "$(nproc)" \
    -I include -I src src
}

if [[ "$fast" == yes ]]; then
  need_packages $packages_format
else
  need_packages $packages_lint
fi
check "clang-format" check_format
check "includes" bash tests/house/check_includes.sh .
if [[ "$fast" == no ]]; then
  # Only the configuration is needed: clang-tidy reads the compile commands.
  cmake --preset debug >/dev/null || die "the preset debug could not be configured"
  check "clang-tidy" check_tidy
  check "cppcheck" check_cppcheck
fi
((${#failed[@]} == 0)) || die "lint failed in: ${failed[*]}"
echo "== lint passed"
