# The measurements of bench/run, each printing its rows of the table. Sourced after measuring.sh.

analyze=("$programs/velkor-cli" analyze)

# Where a command's output goes that is not to know that nobody reads it.
kept=">$data/output"

# measure_modules BYTES [LIMIT]: on one core by processor time, which other programs on the machine
# disturb less; on two by the clock, which is not to pass so many times that of the reference.
measure_modules() {
  local folder what="$(($1 / 1000000)) MB of modules"
  folder=$(input modules "$1")
  say "$what"
  cat "$folder"/*.asm >/dev/null
  pair "$kept" env LC_ALL=C grep -c '^_' "$folder"/*.asm --- \
    taskset -c 0 "${analyze[@]}" "$folder/app.prj" --- \
    taskset -c 0,1 "${analyze[@]}" "$folder/app.prj" --- \
    "$kept" wc -l "$folder"/*.asm --- cat "$folder"/*.asm
  ratio_row "$what, one core" "${processor[1]}" "${processor[1]}" "grep -c '^_'" \
    "${processor[0]}" "${processor_ratio[1]}"
  two_core_rows "$what" "grep -c '^_'" "${2:-}"
  ratio_row "" "${elapsed[2]}" "${processor[2]}" "wc -l" "${elapsed[3]}" \
    "$(calculate "${elapsed[2]} / ${elapsed[3]}")"
  ratio_row "" "${elapsed[2]}" "${processor[2]}" "cat" "${elapsed[4]}" \
    "$(calculate "${elapsed[2]} / ${elapsed[4]}")"
}

# two_core_rows WHAT REFERENCE-NAME LIMIT: of the third of the commands, against the first.
two_core_rows() {
  ratio_row "$1, two cores" "${elapsed[2]}" "${processor[2]}" "$2" "${elapsed[0]}" \
    "${elapsed_ratio[2]}" "$3"
}

# measure_call_graphs MEGABYTES: the same for a folder with call graph files.
measure_call_graphs() {
  local folder what="$1 MB of call graph files"
  folder=$(input callgraphs "$1000000")
  say "$what"
  cat "$folder"/*.ci >/dev/null
  pair "$kept" env LC_ALL=C grep -c 'node:' "$folder"/*.ci --- \
    taskset -c 0 "${analyze[@]}" --format csv "$folder" --- \
    taskset -c 0,1 "${analyze[@]}" --format csv "$folder" --- cat "$folder"/*.ci
  ratio_row "$what, one core" "${processor[1]}" "${processor[1]}" "grep -c node:" \
    "${processor[0]}" "${processor_ratio[1]}" 5
  two_core_rows "$what" "grep -c node:" 4
  ratio_row "" "${elapsed[2]}" "${processor[2]}" "cat" "${elapsed[3]}" \
    "$(calculate "${elapsed[2]} / ${elapsed[3]}")"
}

# measure_program MEGABYTES: a linked program whose code no call graph file tells of.
measure_program() {
  local folder what="$1 MB of code" turns=3
  folder=$(input program "$1000000")
  say "$what"
  cat "$folder"/program.elf >/dev/null
  pair "$kept" taskset -c 0 arm-none-eabi-objdump -d "$folder"/program.elf --- \
    taskset -c 0 "${analyze[@]}" "$folder/velkor.toml"
  ratio_row "$what, one core" "${processor[1]}" "${processor[1]}" "objdump -d" "${processor[0]}" \
    "${processor_ratio[1]}" 1
}

# measure_startup: the shortest runs, against a program that does nothing, 1.5 times which and 2
# milliseconds are met.
measure_startup() {
  local turns=101
  say "short runs"
  pair true --- "$programs/velkor-cli" --version --- \
    "${analyze[@]}" examples/firmware/app.prj --- \
    "${analyze[@]}" --format csv --output "$data/output" examples/firmware/app.prj
  local limit=$((processor[0] * 3 / 2 + 2000)) run=1 what
  for what in "velkor-cli --version" "analyze of 31 functions" "analyze into a file of before"; do
    print_row "$what" "$(seconds "${elapsed[run]}")" "$(seconds "${processor[run]}")" \
      "$(seconds "${processor[0]}") true" "$(printf '%.2f' "${processor_ratio[run]}")" \
      "<= $(seconds "$limit")" "$(verdict "${processor[run]}" "$limit")"
    run=$((run + 1))
  done
}

# benchmark_times PROGRAM FILTER REPETITIONS COUNTER: prints name and microseconds of each benchmark:
# that counter, in milliseconds, where it has one, else the processor time of an iteration; of the
# fastest repetition.
benchmark_times() {
  "$programs/$1" --benchmark_filter="$2" --benchmark_repetitions="$3" --benchmark_format=csv \
    2>/dev/null | tr -d '"' | awk -F, -v counter="$4" '
      BEGIN { unit["ns"] = 1e-3; unit["us"] = 1; unit["ms"] = 1e3; unit["s"] = 1e6 }
      $1 == "name" { for (i = 1; i <= NF; ++i) if ($i == counter) median = i }
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
  done < <(benchmark_times recompute_bench '^Rebuild/.*/1000000' 7 none)
  while read -r name time; do
    limit_row "$name, median" "$time" "$time" 1000
  done < <(benchmark_times recompute_bench 'Margin/.*/1000000' 1 median_ms)
  local counter
  for counter in "median 5000" "most 50000"; do
    while read -r name time; do
      limit_row "$name, ${counter% *}" "$time" "$time" "${counter#* }"
    done < <(benchmark_times recompute_bench 'Callee/.*/1000000' 1 "${counter% *}_ms")
  done
}

# measure_memory FUNCTIONS: of the whole process, for a program in which each calls four others.
measure_memory() {
  local folder turns=1
  folder=$(input random "$1")
  say "memory of $1 functions"
  pair "${analyze[@]}" --format csv "$folder/app.prj"
  local limit=$(($1 * (350 + 4 * 60) / 1024)) ratio
  ratio=$(printf '%.2f' "$(calculate "${peak[0]} / $limit")")
  print_row "memory of $1 functions, $((4 * $1)) calls" "$((peak[0] / 1024)) MB" \
    "$(seconds "${processor[0]}")" "$((limit / 1024)) MB" "$ratio" "<= 1 x" \
    "$(verdict "${peak[0]}" "$limit")"
}

# measure_graph KIND SIZE [LIMIT]: at a quarter of the size, half of it and all of it; seconds that
# the last may take by the clock. The growth is that of processor time.
measure_graph() {
  local commands=() bytes=() part folder
  say "$1 $2"
  for part in 4 2 1; do
    folder=$(input "$1" "$(($2 / part))")
    bytes+=("$(cat "$folder"/*.asm | wc -c)")
    commands+=(--- "${analyze[@]}" --format csv "$folder/app.prj")
  done
  pair "${commands[@]:1}"
  if [ -n "${3:-}" ]; then
    limit_row "$1 $2" "${elapsed[2]}" "${processor[2]}" "${3}000000"
  else
    print_row "$1 $2" "$(seconds "${elapsed[2]}")" "$(seconds "${processor[2]}")" - - - -
  fi
  local input_growth ratio steps
  input_growth=$(calculate "${bytes[2]} / ${bytes[0]}")
  ratio=$(calculate "${processor_ratio[2]} / $input_growth")
  steps="$(seconds "${processor[0]}"), $(seconds "${processor[1]}"), $(seconds "${processor[2]}")"
  print_row "  n, 2n, 4n: $steps" - "$(printf 'x %.2f' "${processor_ratio[2]}")" \
    "$(printf 'x %.2f of the input' "$input_growth")" "$(printf '%.2f' "$ratio")" "<= 1.3 x" \
    "$(verdict "$ratio" 1.3)"
}

# measure_answer KIND FUNCTIONS: the text of analyze, which plans what to state, against all as CSV.
measure_answer() {
  local folder
  folder=$(input "$1" "$2")
  say "answer of $1 $2"
  pair "${analyze[@]}" --format csv "$folder/app.prj" --- "${analyze[@]}" "$folder/app.prj"
  ratio_row "text of $1 $2" "${processor[1]}" "${processor[1]}" "CSV" "${processor[0]}" \
    "${processor_ratio[1]}" 1.2
}

# measure_report NAME PROJECT FUNCTION: all call chains, up to the line limit. What is measured is
# how much more processor time that takes than a report of the maximum chain alone.
measure_report() {
  local format report copy=$data/copy chains=("$programs/velkor-cli" chains "$2" "$3")
  say "reports of $1"
  for format in txt csv; do
    report=$data/report.$format
    rm -f "$report"  # one that is there would be kept instead of what ends at the limit
    "${chains[@]}" --all --output "$report" >/dev/null 2>&1 || true
    cp "$report" "$data/chains.$format"
    pair "${chains[@]}" --output "$report" --- \
      "=4" "${chains[@]}" --all --output "$report" --- ">$copy" cat "$data/chains.$format"
    local measured=$((processor[1] - processor[0]))
    local limit=$((3 * processor[2] > 50000 ? 3 * processor[2] : 50000)) ratio
    ratio=$(printf '%.2f' "$(calculate "$measured / ${processor[2]}")")
    print_row "report of $1, .$format, $(($(wc -c <"$data/chains.$format") / 1000)) kB" - \
      "$(seconds "$measured")" "$(seconds "${processor[2]}") cat" "$ratio" "<= 3 x, 50 ms" \
      "$(verdict "$measured" "$limit")"
  done
}

# measure_specification LINES: how much more processor time an analysis takes that loads the file.
measure_specification() {
  local folder file
  folder=$(input specification "$1")
  file=$folder/limits.txt
  say "specification file of $1 lines"
  pair "$kept" wc -l "$file" --- "${analyze[@]}" "$folder/app.prj" --- \
    "${analyze[@]}" "$folder/app.prj" --load "$file"
  local more=$((processor[2] - processor[1]))
  print_row "specification file of $1 lines" - "$(seconds "$more")" \
    "$(seconds "${processor[0]}") wc -l" \
    "$(printf '%.2f' "$(calculate "$more / ${processor[0]}")")" - -
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
  local check=("$programs/velkor-cli" check --no-fail "$toml" --format) format=1
  pair "${analyze[@]}" --format csv "$toml" --- "${check[@]}" text --- "${check[@]}" sarif
  for format in 1 2; do
    ratio_row "check of $1 functions, $([ "$format" -eq 1 ] && echo text || echo sarif)" \
      "${processor[format]}" "${processor[format]}" "analyze --format csv" "${processor[0]}" \
      "${processor_ratio[format]}" 1.2
  done
}

# The window with a million functions: a table of its own.
measure_window() {
  say "the window"
  echo
  QT_QPA_PLATFORM=offscreen "$programs/window_bench" "$data/window"
}
