#!/usr/bin/env bash
# The public headers: they declare every name of the export list once and no other
# ZIVKS_ function, and each header compiles on its own as C99 and as C++.
# Usage: header_check.sh INCLUDE_DIR EXPORT_LIST C_COMPILER CXX_COMPILER
set -u
inc=$1 list=$2 cc=$3 cxx=$4
pass=0 fail=0
check() {  # check NAME CONDITION-RESULT(0 ok) [DETAIL]
  if [ "$2" -eq 0 ]; then pass=$((pass + 1)); else fail=$((fail + 1)); echo "FAILED: $1"; [ -n "${3:-}" ] && echo "$3"; fi
}

# Function names as the compiler sees them: every ZIVKS_ word followed by "(".
pre=$("$cc" -std=c99 -E -P -I "$inc" -x c "$inc/zivks.h")
check "zivks.h preprocesses" $?
declared=$(echo "$pre" | grep -oE '\bZIVKS_[A-Za-z0-9_]+[[:space:]]*\(' | tr -d ' \t(')
wanted=$(grep -E '^ZIVKS_' "$list" | sort -u)
diff_out=$(diff <(echo "$wanted") <(echo "$declared" | sort -u) | sed -n 's/^</  not declared:/p; s/^>/  not exported:/p')
[ -z "$diff_out" ]; check "declared functions equal the export list" $? "$diff_out"
dups=$(echo "$declared" | sort | uniq -d)
[ -z "$dups" ]; check "no function declared twice" $? "  $dups"

for h in "$inc"/zivks.h "$inc"/zivks/*.h; do
  "$cc" -std=c99 -Wall -Wextra -pedantic -Werror -fsyntax-only -I "$inc" -x c "$h"
  check "${h#$inc/} compiles alone as C99" $?
  "$cxx" -std=c++17 -Wall -Wextra -pedantic -Werror -fsyntax-only -I "$inc" -x c++ "$h"
  check "${h#$inc/} compiles alone as C++" $?
done
echo "$pass passed, $fail failed"
[ "$fail" -eq 0 ]
