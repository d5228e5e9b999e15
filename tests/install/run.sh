#!/usr/bin/env bash
# run.sh SOURCE_DIR BUILD_DIR COMPILER LIBDIR: installs the build into a folder of its own, moves
# that folder, and uses it as a stranger would, by find_package and by pkg-config.
set -euo pipefail
consumer="$1/tests/install/consumer"
build="$2"
compiler="$3"
libdir="$4"

work="$build/tests/install/work"
prefix="$work/moved"
rm -rf "$work"
mkdir -p "$work"

cmake --install "$build" --prefix "$work/prefix" >"$work/install.log"
# An installed tree names no place of its own, so it works wherever it is put.
mv "$work/prefix" "$prefix"
export LD_LIBRARY_PATH="$prefix/$libdir"

# Runs the host given and makes sure that it left a table behind.
run_host() {
  local table="$work/$1.orv"
  "$2" "$table"
  [[ -s "$table" ]]
  echo "$1: the host works"
}

cmake -G Ninja -S "$consumer" -B "$work/package" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$compiler" >"$work/package.log"
cmake --build "$work/package" >>"$work/package.log"
run_host find_package "$work/package/consumer"

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
read -ra flags <<<"$(pkg-config --cflags --libs orv)"
"$compiler" -std=c++20 "$consumer/main.cpp" "${flags[@]}" -o "$work/by-pkg-config"
run_host pkg-config "$work/by-pkg-config"

# Every public header stands on its own, without warnings, whatever a host includes before it.
for header in "$prefix"/include/orv/*.h; do
  echo "#include <orv/$(basename "$header")>" | "$compiler" -std=c++20 -I "$prefix/include" \
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only -x c++ -
done

if [[ -e "$build/bin/orv" ]]; then
  "$prefix/bin/orv" --help >"$work/help.txt"
  [[ -s "$work/help.txt" ]]
  echo "the installed command works"
fi
