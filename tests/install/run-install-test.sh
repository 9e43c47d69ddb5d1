#!/usr/bin/env bash
# Installs the build tree into a scratch prefix, moves the prefix elsewhere,
# and uses everything from there: boardtool, the Tcl package, the Python
# module, and a consumer program built with find_package and with
# pkg-config. The installed tree must name neither the build tree nor, for
# its data, the source tree.
#   run-install-test.sh BUILD_DIR SOURCE_DIR WORK_DIR
set -euo pipefail
build=$1 source=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
fail() { echo "FAILED: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/staged" >/dev/null
mv "$work/staged" "$work/prefix"
prefix=$work/prefix

# Nothing installed points back into the build tree: no text file names it,
# and no program or library looks for libraries there (debug information
# may still name the folders it was compiled in).
if grep -rlIF "$build" "$prefix" >/dev/null; then
  fail "installed files name the build tree: $(grep -rlIF "$build" "$prefix" | head -3)"
fi
while IFS= read -r elf; do
  if readelf -d "$elf" | grep -E 'R(UN)?PATH' | grep -qF "$build"; then
    fail "$elf looks for libraries in the build tree"
  fi
done < <(find "$prefix" -type f \( -name '*.so*' -o -path '*/bin/*' \))

# A board only the installed data directory has: what finds it reads the
# installed data, not the source tree's.
marker=$prefix/share/boardlib/data/boards/board_files/kestrel-boards/install_marker/1.0
mkdir -p "$marker"
sed 's/name="minimal" display_name="Minimal Board"/name="install_marker" display_name="Install Marker"/' \
  "$source/tests/data/minimal/board.xml" >"$marker/board.xml"
cp "$source/tests/data/minimal/part0_pins.xml" "$marker/"

cd "$work"
unset BOARDLIB_DATA_DIRS BOARDLIB_APP_ROOT BOARDLIB_PARAMS TCLLIBPATH PYTHONPATH
"$prefix/bin/boardtool" catalog | grep -q "kestrel-boards:install_marker:1.0" ||
  fail "the installed boardtool does not read the installed data"
ldd "$prefix/bin/boardtool" | grep "libboardlib.so" | grep -qF "$prefix/" ||
  fail "the installed boardtool does not load the installed library"
# The catalog site's style and script come with the program itself.
"$prefix/bin/boardtool" site "$work/site" >/dev/null &&
  [ -s "$work/site/site.css" ] && [ -s "$work/site/site.js" ] &&
  [ -f "$work/site/boards/kestrel-boards_install_marker_1.0.html" ] ||
  fail "the installed boardtool does not write the catalog site"

echo 'package require boardlib; puts [get_boards *install_marker*]' |
  TCLLIBPATH=$prefix/lib tclsh | grep -q "kestrel-boards:install_marker:1.0" ||
  fail "tclsh does not find the installed package"

python_dir=$(find "$prefix/lib" -name 'boardlib*.so' -path '*-packages/*' -printf '%h\n' | head -1)
[ -n "$python_dir" ] || fail "no Python module installed"
[ -f "$python_dir/boardlib.pyi" ] || fail "no type stubs beside the Python module"
PYTHONPATH=$python_dir python3 -c "
import boardlib
assert boardlib.__file__.startswith('$prefix/'), boardlib.__file__
print(boardlib.get_boards('*install_marker*'))" | grep -q "install_marker" ||
  fail "python3 does not find the installed module"

# A consumer built with the CMake package.
cmake -S "$source/tests/install/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer" "$marker/board.xml" >"$work/cmake.out"
printf 'kestrel-boards:install_marker:1.0\n%s\n' "$prefix/lib/../share/boardlib/data" | diff - "$work/cmake.out" ||
  fail "the consumer built with find_package"

# And with pkg-config.
flags=$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags --libs boardlib)
# shellcheck disable=SC2086
c++ -o "$work/pc-consumer" "$source/tests/install/consumer/consumer.cpp" $flags -Wl,-rpath,"$prefix/lib"
"$work/pc-consumer" "$marker/board.xml" | head -1 | grep -qx "kestrel-boards:install_marker:1.0" ||
  fail "the consumer built with pkg-config"
# The manual page and the bash completion.
man -l "$prefix/share/man/man1/boardtool.1" 2>/dev/null | grep -q "^COMMANDS" ||
  grep -q '^\.SH COMMANDS' "$prefix/share/man/man1/boardtool.1" || fail "no manual page"
[ -f "$prefix/share/bash-completion/completions/boardtool" ] || fail "no bash completion"

# One version everywhere: boardtool, the Tcl package, the Python module and
# pkg-config.
version=$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --modversion boardlib)
[ -n "$version" ] || fail "no version in boardlib.pc"
[ "$("$prefix/bin/boardtool" --version)" = "boardtool $version" ] || fail "boardtool --version"
[ "$(echo 'puts [package require boardlib]' | TCLLIBPATH=$prefix/lib tclsh)" = "$version" ] ||
  fail "the Tcl package's version"
[ "$(PYTHONPATH=$python_dir python3 -c 'import boardlib; print(boardlib.__version__)')" = "$version" ] ||
  fail "the Python module's __version__"
echo "installed tree of boardlib $version works from $prefix"
