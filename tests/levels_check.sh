#!/usr/bin/env bash
# levels_check.sh BUILD_DIR SOURCE_DIR: the x86 levels the loader chooses between.
# - An installed program loads the widest level the processor supports, both libraries
#   of one level (the version record names it), and each lower level when told to.
# - Every level this machine runs gives the same digest of every function's results, and
#   passes the whole test suite (CTest runs it at the widest level; here the others).
set -euo pipefail
build=$1 src=$2
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
loader=$(readlink -f /lib64/ld-linux-x86-64.so.2)

# The levels the loader supports here, widest first, from its own report.
mapfile -t levels < <("$loader" --help | sed -n 's/^ *\(x86-64-v[3-9]\) (supported, searched)$/\1/p')
levels+=(x86-64-v2)  # the baseline, in the library folder itself
echo "levels supported: ${levels[*]}"
# Runs a program with the loader restricted to one level's glibc-hwcaps folder.
at_level() { local level=$1; shift; "$loader" --glibc-hwcaps-mask "$level" "$@"; }

cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
libdir=$(dirname "$(find "$tmp/prefix" -name 'libzivks_base.so' | head -n 1)")
cc -std=c99 "$src/tests/consumer/level.c" -I "$tmp/prefix/include" -L "$libdir" \
  -lzivks_base -lzivk_core -o "$tmp/level"

fail=0
check() {  # check WHAT EXPECTED GOT
  if [ "$2" = "$3" ]; then echo "ok: $1: $3"; else echo "FAILED: $1: expected $2, got $3"; fail=1; fi
}
folder_of() { [ "$1" = x86-64-v2 ] && echo "$libdir" || echo "$libdir/glibc-hwcaps/$1"; }
got=$(LD_LIBRARY_PATH=$libdir "$tmp/level")
check "installed, default" "${levels[0]} $(folder_of "${levels[0]}")/libzivks_base.so.0" "$got"
for level in "${levels[@]}"; do
  got=$(LD_LIBRARY_PATH=$libdir at_level "$level" "$tmp/level")
  check "installed, forced to $level" "$level $(folder_of "$level")/libzivks_base.so.0" "$got"
done

# The digests of every level, against the baseline's.
drive=$build/tests/drive/zivks_drive
at_level x86-64-v2 "$drive" --digest --seeds=100 >"$tmp/x86-64-v2.txt"
for level in "${levels[@]}"; do
  [ "$level" = x86-64-v2 ] && continue
  at_level "$level" "$drive" --digest --seeds=100 >"$tmp/$level.txt"
  if diff -q <(tail -n +2 "$tmp/x86-64-v2.txt") <(tail -n +2 "$tmp/$level.txt") >/dev/null; then
    echo "ok: $(head -1 "$tmp/$level.txt"): $(($(wc -l <"$tmp/$level.txt") - 1)) digests as at x86-64-v2"
  else
    echo "FAILED: digests of $level differ from x86-64-v2:"
    diff <(tail -n +2 "$tmp/x86-64-v2.txt") <(tail -n +2 "$tmp/$level.txt") | head -20
    fail=1
  fi
done

# The whole suite at every level but the widest, which CTest runs.
for level in "${levels[@]:1}"; do
  if at_level "$level" "$build/tests/zivks_tests" --gtest_brief=1 >"$tmp/suite.txt" 2>&1; then
    echo "ok: test suite at $level: $(grep -E '^\[  PASSED  \]' "$tmp/suite.txt")"
  else
    echo "FAILED: test suite at $level"; tail -30 "$tmp/suite.txt"; fail=1
  fi
done
exit $fail
