#!/usr/bin/env bash
# The dynamic library exports the listed functions and nothing else, under its name, and needs the run-time libraries only;
# latigo.dll exports them by their ordinals too, and needs the system's own DLLs only.
set -euo pipefail
library=$1
list=$2

# Reads the headers of the file if possible.
headers=$(objdump -p "$library")
field() { awk "/$1/ { print \$NF }" <<<"$headers"; }

if [[ $library == *.dll ]]; then
  diff <(sed -n '/^Export Address Table/,$ s/.*+base\[ *\([0-9]*\)\].*Export RVA/\1/p' <<<"$headers") <(awk '{ print $1 }' "$list")
  # Names by their index in the table, which starts with the base ordinal.
  diff <(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/ s/^\t\[ *\([0-9]*\)\] /\1 /p' <<<"$headers") \
    <(awk '{ print $1 - 1, $2 }' "$list")
  diff <(field '^Ordinal Base') <(echo 1)
  diff <(awk '/^Name/ { print $NF }' <<<"$headers") <(echo latigo.dll)
  ! field 'DLL Name:' | grep -vixE '(advapi32|kernel32|msvcrt|user32)\.dll'
  exit
fi
diff <(nm -D --defined-only "$library" | awk '{ print $3 }' | sort) <(awk '{ print $2 }' "$list" | sort)
diff <(field SONAME) <(echo "liblatigo.so.$3")  # the major version
! field NEEDED | grep -vE '^(libstdc\+\+|libm|libc|libgcc_s|ld-linux.*)\.so'
