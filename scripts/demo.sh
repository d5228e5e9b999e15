# ./dev demo: builds the command and shows it at work.
set -euo pipefail
source scripts/common.sh

need_packages $packages_demo
[[ -f hosts/cli/main.cpp ]] || die "demo: not yet, the command is still to come"
build_preset release orv_cli
echo '$ build/release/bin/orv --help'
build/release/bin/orv --help
