# What the commands of ./dev share; sourced by each with the project's root as working directory.

# The Debian packages that each command needs. This is the only place that names them.
packages_build="cmake g++ libcli11-dev libbenchmark-dev libgmock-dev libgtest-dev librapidcheck-dev
  ninja-build nlohmann-json3-dev pkg-config"
packages_qt="qt6-base-dev xvfb xauth fonts-dejavu-core"
packages_test="$packages_build $packages_qt libshp-dev"
packages_bench="$packages_build"
packages_bench_peers="liblmdb-dev libshp-dev libsqlite3-dev"
packages_bench_figures="python3"
packages_demo="$packages_build python3 shapelib"
packages_lint="$packages_build clang-format clang-tidy cppcheck"
packages_format="clang-format"
packages_windows="cmake g++-mingw-w64-x86-64-posix googletest libwine-dev mingw-w64-tools ninja-build wine
  wine64"
packages_windows32="$packages_windows g++-mingw-w64-i686-posix"
packages_test_windows="$packages_build $packages_windows imagemagick x11-utils xvfb"
packages_fuzz="$packages_build clang"
packages_coverage="$packages_test clang llvm"

# Stops the command with a sentence.
die() {
  echo "dev: $*" >&2
  exit 1
}

# Stops the command because of how it was called.
bad_usage() {
  echo "dev: $*" >&2
  exit 2
}

# Prints those of the named packages that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    [[ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" == installed ]] ||
      echo "$package"
  done
}

# Sees to it that the named Debian packages are there: installs the missing ones for root, names
# them to anybody else and stops. On other systems it trusts the user to have the equivalents.
need_packages() {
  command -v dpkg-query >/dev/null || return 0
  local missing
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]})) || return 0
  if [[ "$(id -u)" != 0 ]]; then
    die "missing Debian packages; as root: apt-get install ${missing[*]}"
  fi
  echo "dev: installing ${missing[*]}"
  local log
  log="$(mktemp)"
  if ! { apt-get -qq update && DEBIAN_FRONTEND=noninteractive apt-get -qq -y install \
    --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    die "the packages could not be installed"
  fi
  rm -f "$log"
}

# Configures and builds a preset, or only the targets named after it. Quiet unless something fails;
# further options of the configuration come from the array configure_options.
build_preset() {
  local preset="$1"
  shift
  local log="build/$preset.log"
  mkdir -p build
  cmake --preset "$preset" ${configure_options[@]+"${configure_options[@]}"} >"$log" 2>&1 || {
    cat "$log" >&2
    die "the preset $preset could not be configured"
  }
  local targets=()
  (($#)) && targets=(--target "$@")
  cmake --build --preset "$preset" --parallel "$(nproc)" ${targets[@]+"${targets[@]}"} ||
    die "the preset $preset could not be built"
}

# The C++ files of the project that git knows or would add.
cxx_files() {
  git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' | while read -r file; do
    if [[ -f "$file" ]]; then echo "$file"; fi
  done
}

# Sets up Wine for the commands that follow: a prefix of its own in the build folder, named by the
# argument, UTF-8 file names, nothing of a desktop (menus, browsers, installers of further parts).
use_wine() {
  export WINEPREFIX="$PWD/build/$1" WINEDEBUG=-all LC_ALL=C.UTF-8
  export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
  unset DISPLAY
  [[ -f "$WINEPREFIX/system.reg" ]] || wineboot --init >/dev/null 2>&1 ||
    die "the Wine prefix could not be made"
}
