#!/usr/bin/env bash
# The ABI of libzivks_base.so: it defines exactly the names of the export list, needs
# only the C library and libm, and leaves the four ZIVK_* core services undefined.
# Usage: abi_check.sh LIBRARY EXPORT_LIST SANITIZED(0|1)
set -u
lib=$1 list=$2 sanitized=${3:-0}
pass=0 fail=0
check() {  # check NAME CONDITION-RESULT(0 ok) [DETAIL]
  if [ "$2" -eq 0 ]; then pass=$((pass + 1)); else fail=$((fail + 1)); echo "FAILED: $1"; [ -n "${3:-}" ] && echo "$3"; fi
}
syms=$(readelf --dyn-syms -W "$lib")
defined=$(echo "$syms" | awk '$7 != "UND" && ($5 == "GLOBAL" || $5 == "WEAK") {sub(/@.*/, "", $8); print $8}' | sort -u)
wanted=$(grep -E '^ZIVKS_' "$list" | sort -u)
diff_out=$(diff <(echo "$wanted") <(echo "$defined"))
check "exported names equal the export list" $? "$diff_out"

needed=$(readelf -d -W "$lib" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
allowed='^(libc\.so\.[0-9]+|libm\.so\.[0-9]+)$'
[ "$sanitized" = 1 ] && allowed='^(libc\.so\.[0-9]+|libm\.so\.[0-9]+|libasan\.so\.[0-9]+|libubsan\.so\.[0-9]+|libstdc\+\+\.so\.[0-9]+|libgcc_s\.so\.[0-9]+)$'
bad=$(echo "$needed" | grep -vE "$allowed")
[ -z "$bad" ]; check "NEEDED holds only the C library and libm" $? "unexpected: $bad"

for s in ZIVK_Malloc ZIVK_Free ZIVK_GetLibVersion ZIVK_GetStatusString; do
  echo "$syms" | awk -v s="$s" '$8 == s && $7 == "UND" {f = 1} END {exit !f}'
  check "$s is imported, not defined" $?
done
echo "$pass passed, $fail failed"
[ "$fail" -eq 0 ]
