#!/usr/bin/env bash
# Installs the build into a scratch prefix, then builds and runs a small user program
# against it twice: through find_package(zivks) and through pkg-config.
# Usage: install_check.sh BUILD_DIR SOURCE_DIR
set -eu
build=$1 src=$2
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
pass=0 fail=0
cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
libdir=$(dirname "$(find "$tmp/prefix" -name 'libzivks_base.so' | head -n 1)")
if cmake -S "$src/tests/consumer" -B "$tmp/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$tmp/prefix" >/dev/null &&
   cmake --build "$tmp/cmake" >/dev/null && LD_LIBRARY_PATH=$libdir "$tmp/cmake/consumer"; then
  pass=$((pass + 1))
else
  fail=$((fail + 1)); echo "FAILED: find_package(zivks)"
fi
export PKG_CONFIG_PATH=$libdir/pkgconfig
if cc -std=c99 "$src/tests/consumer/main.c" $(pkg-config --cflags --libs zivks) -o "$tmp/pc" &&
   LD_LIBRARY_PATH=$libdir "$tmp/pc"; then
  pass=$((pass + 1))
else
  fail=$((fail + 1)); echo "FAILED: pkg-config zivks"
fi
# The soname carries the major version.
if readelf -d "$libdir/libzivks_base.so" | grep -q 'SONAME.*libzivks_base\.so\.[0-9]'; then
  pass=$((pass + 1))
else
  fail=$((fail + 1)); echo "FAILED: versioned soname"
fi
echo "$pass passed, $fail failed"
[ "$fail" -eq 0 ]
