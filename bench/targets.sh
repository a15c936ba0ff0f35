# The measurements of bench/run, each printing its rows of the table. Sourced after measuring.sh.

analyze=("$programs/velkor-cli" analyze)

# measure_modules MEGABYTES: one core by processor time, which other programs on the machine
# disturb less; several by the clock.
measure_modules() {
  local folder what="$1 MB of modules"
  folder=$(input modules "$1000000")
  say "$what"
  cat "$folder"/*.asm >/dev/null
  local output=$data/output
  fastest --output "$output" -- wc -l "$folder"/*.asm
  local wc=$elapsed
  fastest -- cat "$folder"/*.asm
  local cat=$elapsed
  fastest --output "$output" -- env LC_ALL=C grep -c '^_' "$folder"/*.asm
  local grep=$elapsed grep_processor=$processor
  fastest -- taskset -c 0 "${analyze[@]}" "$folder/app.prj"
  ratio_row "$what, one core" "$processor" "$processor" "grep -c '^_'" \
    "$grep_processor" 3
  fastest -- taskset -c 0,1 "${analyze[@]}" "$folder/app.prj"
  ratio_row "$what, two cores" "$elapsed" "$processor" "grep -c '^_'" "$grep" 1.6
  ratio_row "" "$elapsed" "$processor" "wc -l" "$wc"
  ratio_row "" "$elapsed" "$processor" "cat" "$cat"
}

# measure_call_graphs MEGABYTES: the same for a folder with call graph files.
measure_call_graphs() {
  local folder what="$1 MB of call graph files"
  folder=$(input callgraphs "$1000000")
  say "$what"
  cat "$folder"/*.ci >/dev/null
  fastest -- cat "$folder"/*.ci
  local cat=$elapsed
  fastest --output "$data/output" -- env LC_ALL=C grep -c 'node:' "$folder"/*.ci
  local grep=$elapsed grep_processor=$processor
  fastest -- taskset -c 0 "${analyze[@]}" --format csv "$folder"
  ratio_row "$what, one core" "$processor" "$processor" "grep -c node:" "$grep_processor" 5
  fastest -- taskset -c 0,1 "${analyze[@]}" --format csv "$folder"
  ratio_row "$what, two cores" "$elapsed" "$processor" "grep -c node:" "$grep"
  ratio_row "" "$elapsed" "$processor" "cat" "$cat"
}

# measure_program MEGABYTES: a linked program whose code no call graph file tells of.
measure_program() {
  local folder what="$1 MB of code"
  folder=$(input program "$1000000")
  say "$what"
  cat "$folder"/program.elf >/dev/null
  fastest --output "$data/output" -- taskset -c 0 arm-none-eabi-objdump -d "$folder"/program.elf
  local objdump=$processor
  fastest -- taskset -c 0 "${analyze[@]}" "$folder/velkor.toml"
  ratio_row "$what, one core" "$processor" "$processor" "objdump -d" "$objdump" 1
}

# benchmark_times PROGRAM FILTER REPETITIONS: prints name and microseconds of each benchmark: its
# counter median_ms where it has one, else the processor time of an iteration; of the fastest
# repetition.
benchmark_times() {
  "$programs/$1" --benchmark_filter="$2" --benchmark_repetitions="$3" --benchmark_format=csv \
    2>/dev/null | tr -d '"' | awk -F, '
      BEGIN { unit["ns"] = 1e-3; unit["us"] = 1; unit["ms"] = 1e3; unit["s"] = 1e6 }
      $1 == "name" { for (i = 1; i <= NF; ++i) if ($i == "median_ms") median = i }
      $5 in unit && $1 !~ /_(mean|median|stddev|cv)$/ {
        sub(/\/(iterations|repeats):.*/, "", $1)
        time = median ? $median * 1e3 : $4 * unit[$5]
        if (!($1 in best)) order[++count] = $1
        if (!($1 in best) || time < best[$1]) best[$1] = time
      }
      END { for (i = 1; i <= count; ++i) print order[i], best[order[i]] }'
}

measure_recompute() {
  say "Recompute of 1000000 functions"
  local name time
  while read -r name time; do
    limit_row "$name" "$time" "$time" 600000
  done < <(benchmark_times recompute_bench '^Rebuild/.*/1000000' 3)
  local seen=
  while read -r name time; do
    seen=yes
    limit_row "$name, median" "$time" "$time" 1000
  done < <(benchmark_times recompute_bench 'Margin/.*/1000000' 1)
  if [ -z "$seen" ]; then
    print_row "one margin change, median" "not measured" - - - "<= 1.0 ms" -
  fi
  while read -r name time; do
    limit_row "$name, median" "$time" "$time" 5000
  done < <(benchmark_times recompute_bench 'Callee/.*/1000000' 1)
}

# measure_memory FUNCTIONS: of the whole process, for a program in which each calls four others.
measure_memory() {
  local folder
  folder=$(input random "$1")
  say "memory of $1 functions"
  fastest --repeat 1 -- "${analyze[@]}" "$folder/app.prj"
  local limit=$(($1 * (400 + 4 * 16) / 1024)) ratio
  ratio=$(printf '%.2f' "$(calculate "$peak / $limit")")
  print_row "memory of $1 functions, $((4 * $1)) calls" "$((peak / 1024)) MB" \
    "$(seconds "$processor")" "$((limit / 1024)) MB" "$ratio" "<= 1 x" "$(verdict "$peak" "$limit")"
}

# measure_graph KIND SIZE: at a quarter of the size, half of it and all of it. The growth is that of
# processor time.
measure_graph() {
  local processors=() bytes=() part folder
  say "$1 $2"
  for part in 4 2 1; do
    folder=$(input "$1" "$(($2 / part))")
    bytes+=("$(cat "$folder"/*.asm | wc -c)")
    fastest --repeat 3 -- "${analyze[@]}" "$folder/app.prj"
    processors+=("$processor")
  done
  limit_row "$1 $2" "$elapsed" "$processor" 2000000
  local growth input_growth ratio steps
  growth=$(calculate "${processors[2]} / ${processors[0]}")
  input_growth=$(calculate "${bytes[2]} / ${bytes[0]}")
  ratio=$(calculate "$growth / $input_growth")
  steps="$(seconds "${processors[0]}"), $(seconds "${processors[1]}"), $(seconds "$processor")"
  print_row "  n, 2n, 4n: $steps" - "$(printf 'x %.2f' "$growth")" \
    "$(printf 'x %.2f of the input' "$input_growth")" "$(printf '%.2f' "$ratio")" "<= 1.5 x" \
    "$(verdict "$ratio" 1.5)"
}

# measure_answer KIND FUNCTIONS: the text of analyze, which plans what to state, against all as CSV.
measure_answer() {
  local folder
  folder=$(input "$1" "$2")
  say "answer of $1 $2"
  fastest --repeat 3 -- "${analyze[@]}" --format csv "$folder/app.prj"
  local csv=$processor
  fastest --repeat 3 -- "${analyze[@]}" "$folder/app.prj"
  ratio_row "text of $1 $2" "$processor" "$processor" "CSV" "$csv" 1.2
}

# measure_report NAME PROJECT FUNCTION: all call chains, up to the line limit. What is measured is
# how much more processor time that takes than a report of the maximum chain alone.
measure_report() {
  local format report copy=$data/copy chains=("$programs/velkor-cli" chains "$2" "$3")
  say "reports of $1"
  for format in txt csv; do
    report=$data/report.$format
    fastest -- "${chains[@]}" --output "$report"
    local start=$processor
    rm -f "$report"  # one that ends early is not put over another one
    fastest --status 4 -- "${chains[@]}" --all --output "$report"
    local measured=$((processor - start))
    fastest --output "$copy" -- cat "$report"
    local limit=$((3 * processor > 50000 ? 3 * processor : 50000)) ratio
    ratio=$(printf '%.2f' "$(calculate "$measured / $processor")")
    print_row "report of $1, .$format, $(($(wc -c <"$report") / 1000)) kB" - \
      "$(seconds "$measured")" "$(seconds "$processor") cat" "$ratio" "<= 3 x, 50 ms" \
      "$(verdict "$measured" "$limit")"
  done
}

# measure_specification LINES: how much more processor time an analysis takes that loads the file.
measure_specification() {
  local folder file
  folder=$(input specification "$1")
  file=$folder/limits.txt
  say "specification file of $1 lines"
  fastest --output "$data/output" -- wc -l "$file"
  local wc=$processor
  fastest -- "${analyze[@]}" "$folder/app.prj"
  local start=$processor
  fastest -- "${analyze[@]}" "$folder/app.prj" --load "$file"
  print_row "specification file of $1 lines" - "$(seconds $((processor - start)))" \
    "$(seconds "$wc") wc -l" "$(printf '%.2f' "$(calculate "($processor - $start) / $wc")")" - -
}

# measure_check FUNCTIONS: the gate against an analysis of the same program, in processor time.
measure_check() {
  local folder toml
  folder=$(input random "$1")
  toml=$folder/gate.toml
  cat >"$toml" <<'END'
input = "app.prj"
frame = 36
switch = 40
[stack.main]
entry = "f0"
size = 4096
[stack.task]
entry = "f1"
size = 4096
[interrupts]
levels = [["f2", "f3"], ["f4"]]
END
  say "check of $1 functions"
  fastest -- "${analyze[@]}" --format csv "$toml"
  local csv=$processor format
  for format in text sarif; do
    fastest -- "$programs/velkor-cli" check --no-fail --format "$format" "$toml"
    ratio_row "check of $1 functions, $format" "$processor" "$processor" "analyze --format csv" \
      "$csv" 1.2
  done
}

# The window with a million functions: a table of its own.
measure_window() {
  say "the window"
  echo
  QT_QPA_PLATFORM=offscreen "$programs/window_bench" "$data/window"
}
