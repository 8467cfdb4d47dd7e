#!/usr/bin/env bash
# entries_check.sh DRIVE EXPORTS: the driver has one entry for every exported name.
set -euo pipefail
drive=$1 exports=$2
diff <(grep '^ZIVKS_' "$exports" | sort) <("$drive" --list | sort) >/tmp/zivks_entries.$$ || {
  echo "entries and exports differ (< exported without an entry, > entry not exported):"
  cat /tmp/zivks_entries.$$
  rm -f /tmp/zivks_entries.$$
  exit 1
}
rm -f /tmp/zivks_entries.$$
echo "entries: $("$drive" --list | wc -l), one for every exported name"
