#!/usr/bin/env bash
# The dynamic library exports the listed functions and nothing else, under its name, and needs the run-time libraries only.
set -euo pipefail
library=$1
list=$2

diff <(nm -D --defined-only "$library" | awk '{ print $3 }' | sort) <(awk '{ print $2 }' "$list" | sort)
diff <(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }') <(echo liblatigo.so.13)
if objdump -p "$library" | awk '$1 == "NEEDED" { print $2 }' | grep -vE '^(libstdc\+\+|libm|libc|libgcc_s|ld-linux.*)\.so'; then
  exit 1
fi
