#!/bin/bash
# hardening.sh PROGRAM...: whether each built program has what a hardened build gives it.
set -u

failed=0
# requires PROGRAM WHAT PATTERN READELF_OPTION...: the pattern stands in what readelf prints.
requires() {
  local program=$1 what=$2 pattern=$3
  shift 3
  if ! grep -Eq "$pattern" <<<"$(readelf --wide "$@" "$program")"; then
    echo "$program: no $what"
    failed=1
  fi
}

for program in "$@"; do
  requires "$program" "position-independent code" 'Flags:.* PIE' --dynamic
  requires "$program" "read-only relocations" 'GNU_RELRO' --program-headers
  requires "$program" "binding at start" 'Flags:.* NOW' --dynamic
  requires "$program" "stack protection" '__stack_chk_fail' --dyn-syms
  requires "$program" "checked library calls" '_chk@' --dyn-syms
  requires "$program" "library assertions" '__glibcxx_assert_fail' --dyn-syms
done
exit "$failed"
