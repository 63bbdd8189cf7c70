#!/usr/bin/env bash
# Cross-builds everything but the tests for arm64 macOS into build/macos and checks the executables.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="$root/build/macos"
jobs=$(nproc)

fail() { printf 'macos: %s\n' "$*" >&2; exit 1; }

[ "$(uname -sm)" = "Linux x86_64" ] || fail "the cross build runs on x86-64 Linux; on a Mac the ordinary build is the proof"

# Installed anew only when the committed lock file says something else than what is there.
install_toolchain() {
  local prefix="$build/toolchain"
  cmp -s "$here/toolchain/package-lock.json" "$prefix/installed-lock.json" && return
  command -v npm >/dev/null || fail "please install npm: the cross compiler is a package of its registry"
  rm -rf "$prefix"
  mkdir -p "$prefix"
  cp "$here/toolchain/package.json" "$here/toolchain/package-lock.json" "$prefix/"
  npm ci --prefix "$prefix" --ignore-scripts --no-audit --no-fund --loglevel=error
  cp "$here/toolchain/package-lock.json" "$prefix/installed-lock.json"
}

# The headers of the libraries we use, one by one: nothing else of the host's may be seen by a build for macOS.
link_headers() {
  local name
  mkdir -p "$build/include"
  for name in simdjson.h expat.h expat_external.h fmt CLI boost sqlite3.h zstd.h zstd_errors.h \
    curses.h ncurses_dll.h term.h unctrl.h; do
    if [ -e "/usr/include/$name" ]; then ln -sfn "/usr/include/$name" "$build/include/$name"; fi
  done
}

install_toolchain
link_headers

# The compiler cache goes by the toolchain's version and by relative paths, so that it serves every clone.
export CCACHE_COMPILERTYPE=clang CCACHE_BASEDIR="$root"
CCACHE_COMPILERCHECK="string:$(sha256sum "$here/zig-c++" "$here/toolchain/package-lock.json" | cut -d' ' -f1 | tr '\n' ' ')"
export CCACHE_COMPILERCHECK

cd "$root"
cmake --preset macos >"$build/configure.log" 2>&1 || { cat "$build/configure.log" >&2; exit 1; }
cmake --build --preset macos -j "$jobs"
grep -q '^Libs.private:.* -framework IOKit' "$build/quellincore.pc" || fail "quellincore.pc does not name the frameworks"
if grep -q icu "$build/quellincore.pc"; then fail "quellincore.pc asks for what no Mac needs"; fi
python3 "$here/check_macho.py" "$build/bin"
