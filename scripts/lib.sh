# Shared by the scripts: install what a fresh Debian machine lacks, and build in a
# folder of build/ with the given CMake options.
set -euo pipefail
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
JOBS=${JOBS:-$(nproc)}

# ensure_packages PKG... : apt-get install the ones that are missing (as root).
ensure_packages() {
  local missing=()
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "missing Debian packages: ${missing[*]} (run as root, or install them)" >&2
    return 1
  fi
  echo "installing: ${missing[*]}"
  DEBIAN_FRONTEND=noninteractive apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

BASE_PACKAGES=(g++ cmake ninja-build pkg-config libgtest-dev googletest binutils libxxhash-dev)

# configure_and_build DIR CMAKE-OPTIONS... : an incremental build in $ROOT/build/DIR.
# Of the configure output only the line that names the chosen backend is shown.
configure_and_build() {
  local dir=$ROOT/build/$1 out
  shift
  if ! out=$(cmake -S "$ROOT" -B "$dir" -G Ninja "$@"); then
    echo "$out"
    return 1
  fi
  grep -E '^-- zivks:' <<<"$out" || true
  cmake --build "$dir" -j "$JOBS"
}

# run_tests DIR : the suite through CTest, then the test runner's own summary: CTest
# counts the whole GoogleTest binary as one test.
run_tests() {
  local dir=$ROOT/build/$1 rc=0
  (cd "$dir" && ctest --output-on-failure -j 2) || rc=$?
  local log=$dir/Testing/Temporary/LastTest.log ran failed
  echo "GoogleTest summary (zivks_tests):"
  grep -hE '^\[(==========|  PASSED  |  FAILED  )\]' "$log" 2>/dev/null | sed 's/^/  /' || true
  ran=$(grep -hoE '^\[==========\] [0-9]+ tests? from' "$log" 2>/dev/null | grep -oE "[0-9]+" | head -1 || true)
  failed=$(grep -hoE '^\[  FAILED  \] [0-9]+ tests?,' "$log" 2>/dev/null | grep -oE "[0-9]+" | head -1 || true)
  [ -n "$ran" ] && echo "zivks_tests: $((ran - ${failed:-0})) passed, ${failed:-0} failed"
  return "$rc"
}

# The best x86-64 level of this machine: v4 (AVX-512), v3 (AVX2) or v2.
best_x86_level() {
  local flags
  flags=$(grep -m1 '^flags' /proc/cpuinfo)
  if [[ $flags == *avx512f* && $flags == *avx512bw* && $flags == *avx512dq* && $flags == *avx512vl* ]]; then
    echo v4
  elif [[ $flags == *avx2* && $flags == *fma* && $flags == *bmi2* ]]; then
    echo v3
  else
    echo v2
  fi
}
