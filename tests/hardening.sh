#!/usr/bin/env bash
# Checks the hardening of the linked files.   hardening.sh ARCHIVE LIBRARY [PROGRAM]
set -euo pipefail
archive=$1
shift
fail() { echo "$1: $2" >&2 && exit 1; }

# Every object file is marked for branch targets and shadow stacks.
objects=$(ar t "$archive" | wc -l)
marked=$(readelf -nW "$archive" | grep -c 'x86 feature:.*IBT, SHSTK') || true
((objects > 0 && marked == objects)) || fail "$archive" "$marked of $objects objects are marked for IBT and SHSTK"

for file in "$@"; do
  facts=$(readelf -ldnW --dyn-syms "$file")
  has() { grep -qE "$1" <<<"$facts" || fail "$file" "$2"; }
  has '^ +GNU_STACK .* RW +0x' 'the stack is executable'
  has '^ +GNU_RELRO' 'tables stay writable'
  has '\(FLAGS_1\).*NOW' 'names are bound while it runs'
  has 'x86 feature:.*SHSTK' 'no note on shadow stacks'
  has ' __stack_chk_fail' 'no stack protector'
  has ' __[a-z]+_chk(@|$| )' 'no checked copies'
done
for program in "${@:2}"; do
  readelf -dW "$program" | grep -qE '\(FLAGS_1\).* PIE' || fail "$program" 'its address is fixed'
done
