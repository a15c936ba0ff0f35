# How bench/run measures and prints. Sourced with the repository's root as the current folder.
# Times are microseconds until they are printed.

programs=build/release/bin
data=build/bench-data

say() {
  echo "bench/run: $*" >&2
}

# Inputs stay between runs for as long as the generator is the same.
prepare_data() {
  if ! cmp -s "$programs/generate" "$data/generate"; then
    rm -rf "$data"
    mkdir -p "$data"
    cp "$programs/generate" "$data/generate"
  fi
}

# input KIND SIZE: prints the folder of that project, generated unless it is there.
input() {
  local folder=$data/$1-$2
  if [ ! -e "$folder/app.prj" ]; then
    say "generating $1 $2"
    "$programs/generate" "$1" --size "$2" "$folder"
  fi
  echo "$folder"
}

# pair COMMAND... --- COMMAND...: runs them in turn, seven times unless turns says otherwise, and
# sets for each, in arrays, the medians of elapsed, processor and peak (kilobytes), and how often it
# holds the first one's time in the same turn: elapsed_ratio and processor_ratio.
pair() {
  local costs line
  costs=$("$programs/measure" --repeat "${turns:-7}" -- "$@")
  elapsed=() processor=() peak=() elapsed_ratio=() processor_ratio=()
  while read -r -a line; do
    elapsed+=("${line[0]}") processor+=("${line[1]}") peak+=("${line[2]}")
    elapsed_ratio+=("${line[3]}") processor_ratio+=("${line[4]}")
  done <<<"$costs"
}

calculate() {
  awk "BEGIN { printf \"%.4f\", $1 }"
}

# seconds MICROSECONDS: with three significant digits, in the unit that fits; "-" stays.
seconds() {
  if [ "$1" = - ]; then
    echo -
    return
  fi
  awk -v us="$1" 'BEGIN {
    if (us >= 1e6) printf "%.2f s", us / 1e6
    else if (us >= 1e4) printf "%.0f ms", us / 1e3
    else if (us >= 1e3) printf "%.1f ms", us / 1e3
    else printf "%.0f us", us
  }'
}

# verdict VALUE LIMIT
verdict() {
  awk -v value="$1" -v limit="$2" 'BEGIN { print (value <= limit ? "met" : "MISSED") }'
}

print_row() {
  printf '%-44s %12s %9s  %-22s %6s  %-12s %s\n' "$@"
}

print_heading() {
  print_row what measured processor reference ratio target result
}

# ratio_row WHAT MEASURED PROCESSOR REFERENCE-NAME REFERENCE RATIO [LIMIT]: two times and how often the
# one holds the other.
ratio_row() {
  local target=- result=-
  if [ -n "${7:-}" ]; then
    target="<= $7 x"
    result=$(verdict "$6" "$7")
  fi
  print_row "$1" "$(seconds "$2")" "$(seconds "$3")" "$(seconds "$5") $4" \
    "$(printf '%.2f' "$6")" "$target" "$result"
}

# limit_row WHAT MEASURED PROCESSOR LIMIT: a time that is not to be passed.
limit_row() {
  print_row "$1" "$(seconds "$2")" "$(seconds "$3")" - - "<= $(seconds "$4")" "$(verdict "$2" "$4")"
}

print_machine() {
  echo
  echo "Machine   $(nproc) cores, $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1)"
  echo "System    $(uname -sr), load $(cut -d' ' -f1-3 /proc/loadavg)"
  echo "Compiler  $(c++ --version | head -1)"
}
