#!/usr/bin/env bash
# Packs the committed sources and writes a Homebrew formula for the archive.
# usage: make_formula.sh FOLDER [URL]   (URL: where the archive will be found; by default the file itself)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

[ $# -ge 1 ] || { sed -n 's/^# usage/usage/p' "$0" >&2; exit 2; }
folder=$1
version=$(sed -n 's/^project(Quellin VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
homepage=$(sed -n 's/^project(Quellin .*HOMEPAGE_URL "\([^"]*\)".*/\1/p' CMakeLists.txt)
archive="$folder/quellin-$version.tar.gz"
mkdir -p "$folder"
git archive --format=tar.gz --prefix="quellin-$version/" -o "$archive" HEAD
url=${2:-"file://$(realpath "$archive")"}
if command -v sha256sum >/dev/null; then sum=$(sha256sum <"$archive"); else sum=$(shasum -a 256 <"$archive"); fi
sed -e "s|@URL@|$url|" -e "s|@SHA256@|${sum%% *}|" -e "s|@HOMEPAGE@|$homepage|" packaging/quellin.rb.in >"$folder/quellin.rb"
printf '%s\n' "$archive" "$folder/quellin.rb"
