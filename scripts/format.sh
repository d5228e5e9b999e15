# ./dev format: formats all sources in place.
set -euo pipefail
source scripts/common.sh

need_packages $packages_format
cxx_files | xargs -r clang-format -i
