#!/bin/bash
# windows.sh WINE WINDOWS_PROGRAM PROGRAM: runs commands with the program for Windows and with that of
# this host, on copies of the examples, and compares what they print, their exit status and the files
# that they leave. Paths may be spelt as each host spells them.
set -euo pipefail
wine=$1
windows=$(realpath "$2")
here=$(realpath "$3")
root=$(realpath "$(dirname "$0")/../..")
corpus=$root/../shared/corpus
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0
compared=0

# Both run in a folder of the same name.
put_inputs() {
  rm -rf "$scratch/in"
  mkdir "$scratch/in"
  cp -a "$root/examples/lua" "$root/examples/firmware" "$scratch/in"
  for folder in "$corpus"/gcc/lua/arm "$corpus"/gcc/micro/basic-arm; do
    [ ! -d "$folder" ] || cp -a "$folder" "$scratch/in/$(basename "$folder")"
  done
}

# The sum and the name of each file in that folder.
sums() {
  (cd "$scratch/in" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum)
}

# A project whose analysis takes a while: many names of one long module.
put_long_project() {
  mkdir "$scratch/long"
  cat "$root/examples/lua/lzio.asm" <(yes "; a line that says nothing" | head -60000) \
    >"$scratch/long/m0.asm"
  printf '[ProjectManager]\nPath=.\n[SrcFile]\n' >"$scratch/long/app.prj"
  for number in $(seq 300); do
    ln "$scratch/long/m0.asm" "$scratch/long/m$number.asm"
    echo "Source$number=m$number.c" >>"$scratch/long/app.prj"
  done
  printf '[Options.CCTarn 0]\n' >>"$scratch/long/app.prj"
}

# A path of the other host, however it is quoted, and one below the programs' own folders. Line ends
# stay as they are.
as_here() {
  perl -pe 's{Z:((?:\\\\?|/)(?:[^\s"<>|:,;()\x27\\]|\\\\?)*)}{my $p = $1; $p =~ s/\\+/\//g; $p}ge' "$1" |
    sed "s|${windows%/bin/*}/|BUILD/|g; s|${here%/bin/*}/|BUILD/|g"
}

# What became of the files: those that are gone, those that are new or changed.
say_files() {
  sums >"$scratch/left"
  if cmp -s "$scratch/inputs" "$scratch/left"; then
    return
  fi
  LC_ALL=C comm -23 <(cut -c35- "$scratch/inputs") <(cut -c35- "$scratch/left") | sed 's/^/gone: /'
  LC_ALL=C comm -13 <(LC_ALL=C sort "$scratch/inputs") <(LC_ALL=C sort "$scratch/left") |
    cut -c35- | LC_ALL=C sort | while read -r file; do
      echo "left: $file"
      as_here "$scratch/in/$file"
    done
  put_inputs
}

run() {  # NAME COMMAND...
  local name=$1 status=0
  shift
  (cd "$scratch/in" && "$@") >"$scratch/$name.out" 2>"$scratch/$name.err" </dev/null || status=$?
  as_here "$scratch/$name.out" >"$scratch/$name.said"
  as_here "$scratch/$name.err" | sed '/^wine[ :]/d' >>"$scratch/$name.said"  # shared with wine
  say_files >>"$scratch/$name.said"
  echo "status $status" >>"$scratch/$name.said"
}

compare() {  # ARGUMENT...
  run here "$here" "$@"
  run windows "$wine" "$windows" "$@"
  compared=$((compared + 1))
  if ! cmp -s "$scratch/here.said" "$scratch/windows.said"; then
    failed=1
    echo "velkor-cli $*"
    diff "$scratch/here.said" "$scratch/windows.said" | head -20 || true
  fi
}

export LC_ALL=C.UTF-8 VELKOR_MAP=
page=(--codepage utf-8)
put_inputs
sums >"$scratch/inputs"
for input in lua/app.prj firmware/app.prj arm basic-arm; do
  if [ ! -e "$root/examples/$input" ] && [ ! -d "$corpus/gcc/lua/arm" ]; then
    echo "no corpus: $input is left out" >&2
    continue
  fi
  compare analyze "$input" --format json "${page[@]}"
  compare analyze "$input" --chains "${page[@]}"
  compare todo "$input" "${page[@]}"
  compare report "$input" --output page.html "${page[@]}"
  compare init "$input" --output new.toml "${page[@]}"
  compare check "$input" --limit main=100 --format sarif --output found.sarif "${page[@]}"
done
compare analyze lua/app.prj --format csv --output lua/rows.csv "${page[@]}"
compare chains lua/app.prj main --all --output - "${page[@]}"
compare adjust firmware/app.prj main --margin 12 "${page[@]}"
compare load firmware/app.prj firmware/limits.txt "${page[@]}"
compare save firmware/app.prj --output unknown.txt "${page[@]}"
compare diff firmware/app.prj lua/app.prj --format markdown "${page[@]}"
compare analyze missing.prj "${page[@]}"
compare analyse lua/app.prj
compare explain lua/app.prj main --codepage 932
compare --help

# Ctrl-C, once the reading has begun.
put_long_project
"$wine" "$windows" analyze "$scratch/long/app.prj" >"$scratch/stopped.out" 2>"$scratch/stopped.err" &
program=$!
until grep -q Reading "$scratch/stopped.err" || ! kill -0 "$program" 2>/dev/null; do sleep 0.01; done
kill -INT "$program" || true
status=0
wait "$program" || status=$?
if [ "$status" -ne 130 ] || [ -s "$scratch/stopped.out" ]; then
  failed=1
  echo "Ctrl-C: status $status"
  tail -3 "$scratch/stopped.err"
fi

[ "$failed" -ne 0 ] || echo "$compared commands say the same on both hosts"
exit "$failed"
