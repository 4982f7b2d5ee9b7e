#!/usr/bin/env bash
# Compares the functions a built Qel library exports with the committed list tests/exports.txt
# (mangled C++ names, one a line, sorted): the same names on 64-bit Linux and on 32- and 64-bit
# Windows, since MinGW-w64 mangles as g++ does on Linux and the exports are cdecl (undecorated).
#   scripts/check_exports.sh build/dev/libqel.so            ELF: the dynamic symbol table (nm -D)
#   scripts/check_exports.sh build/mingw/qel.dll            PE: the export table (objdump -p)
#   scripts/check_exports.sh --update build/dev/libqel.so   rewrite the list after adding a function
# Exits 1, naming every missing and every unexpected export, when they differ.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
list="$root/tests/exports.txt"
update=no
if [ "${1:-}" = "--update" ]; then
  update=yes
  shift
fi
lib=${1:?usage: check_exports.sh [--update] <libqel.so | qel.dll>}

first_found() {
  for tool in "$@"; do
    if command -v "$tool" >/dev/null 2>&1; then echo "$tool"; return; fi
  done
  echo "check_exports.sh: none of $* found" >&2
  exit 2
}

exports() {
  case "$lib" in
    *.dll | *.DLL)
      # The "[Ordinal/Name Pointer] Table" of objdump -p: "[  12] name" lines up to a blank line.
      "$(first_found ${OBJDUMP:-} x86_64-w64-mingw32-objdump i686-w64-mingw32-objdump objdump)" -p "$lib" |
        awk '/\[Ordinal\/Name Pointer\] Table/ { on = 1; next }
             on && /^[ \t]*\[ *[0-9]+\] / { print $NF; next }
             on && NF == 0 { on = 0 }' ;;
    *)
      # Defined dynamic symbols, without the version nodes (type A).
      "$(first_found ${NM:-} nm)" -D --defined-only "$lib" | awk 'NF == 3 && $2 != "A" { print $3 }' ;;
  esac | LC_ALL=C sort -u
}

current=$(exports)
if [ -z "$current" ]; then
  echo "check_exports.sh: no exports found in $lib" >&2
  exit 1
fi
if [ "$update" = yes ]; then
  printf '%s\n' "$current" >"$list"
  echo "$(wc -l <"$list") exports written to tests/exports.txt"
  exit 0
fi
missing=$(LC_ALL=C comm -23 "$list" <(printf '%s\n' "$current"))
extra=$(LC_ALL=C comm -13 "$list" <(printf '%s\n' "$current"))
if [ -n "$missing" ] || [ -n "$extra" ]; then
  [ -z "$missing" ] || printf 'missing from %s:\n%s\n' "$lib" "$missing"
  [ -z "$extra" ] || printf 'exported by %s but not in tests/exports.txt:\n%s\n' "$lib" "$extra"
  echo "(after a deliberate change of the interface: scripts/check_exports.sh --update <64-bit Linux libqel.so>)"
  exit 1
fi
echo "$(printf '%s\n' "$current" | wc -l) exports of $lib match tests/exports.txt"
