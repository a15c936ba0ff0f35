# journey.sh VELKOR VELKOR_CLI EXAMPLES: works the window with keys and mouse, from its start to
# its end, on a screen in memory; what it writes must be what the command line writes.
set -eEuo pipefail
velkor=$1
cli=$2
folder=$(mktemp -d)
children=()
trap 'kill "${children[@]}" 2>/dev/null || true; wait; rm -rf "$folder"' EXIT
trap 'trap - ERR; echo "lines ${BASH_LINENO[*]}: $BASH_COMMAND, before the window \"$(title)\"" >&2
      tail -n 20 "$folder"/*.log >&2; exit 1' ERR

# All that is awaited has to have come by then.
readonly kEnd=$((SECONDS + 600))
readonly kTree=170x230+5+330 kList=780x150+215+330 kSummary=1180x120+5+75
readonly kBox="velkor" kAdjust="Adjust Stack Size"

# What is open: the input, its adjustments and the title of its window.
input=app.prj
adjustments=app.psg
main="app.prj - velkor"

is_patient() { ((SECONDS < kEnd)); }
await() { until "$@"; do is_patient || return 1; sleep 0.05; done; }
try() { for _ in {1..100}; do if "$@"; then return 0; fi; sleep 0.05; done; return 1; }

press() { xdotool key --delay 60 "$@"; }
title() { xdotool getactivewindow getwindowname 2>/dev/null || true; }
is_titled() { [ "$(title)" = "$1" ]; }
is_other() { [ -n "$(title)" ] && ! is_titled "$1"; }
has() { grep -qsxF -- "$1"$'\r' "$folder/$adjustments"; }
shows() { grep -q ">$1<" "$folder/$2"; }
are_equal() { cmp -s "$folder/$1" "$folder/$2"; }
has_desktops() { [[ $(xdotool get_num_desktops 2>/dev/null) == [1-9]* ]]; }
is_ended() { ! [ -e "/proc/$1/exe" ]; }

picture() { import -window root -crop "$1" rgb:- | md5sum; }
changed() { [ "$(picture "$1")" != "$2" ]; }
is_picture() { ! changed "$1" "$2"; }
is_steady() { local before; before=$(picture "$1"); sleep 0.3; ! changed "$1" "$before"; }
steady() { await is_steady "$1"; picture "$1"; }

# Presses the keys until another window is active: a command is not there yet while a job runs.
open_by() {
  local before
  before=$(title)
  press "$@"
  until try is_other "$before"; do
    is_patient
    press Escape Escape "$@"
  done
}

# give_file NAME KEYS...: enters the name in the dialog that the keys open.
give_file() {
  open_by "${@:2}"
  xdotool type --delay 15 "$folder/$1"
  press Return
}

# Type-ahead in the call tree; the list follows.
select_function() {
  local before
  before=$(steady "$kList")
  xdotool type --delay 15 "$1"
  await changed "$kList" "$before"
  steady "$kList" >"$folder/picture"
}

start() {
  Xvfb -displayfd 1 -screen 0 1280x720x24 -nolisten tcp >"$folder/display" 2>"$folder/screen.log" &
  children+=($!)
  await grep -qsx '[0-9]\+' "$folder/display"
  export DISPLAY HOME=$folder XDG_CONFIG_HOME=$folder XDG_CACHE_HOME=$folder LC_ALL=C.UTF-8 LANGUAGE=
  export QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=1 QT_IM_MODULE= DBUS_SESSION_BUS_ADDRESS=disabled:
  DISPLAY=:$(cat "$folder/display")
  openbox --sm-disable >"$folder/openbox.log" 2>&1 &
  children+=($!)
  await has_desktops
  "$velkor" --no-settings >"$folder/window.log" 2>&1 &
  window=$!
  children+=("$window")
  await is_titled "Untitled - velkor"
  xdotool getactivewindow windowmove 0 0
}

open_project() {
  local before
  before=$(steady "$kTree")
  give_file "$input" ctrl+o
  await is_titled "$main"
  await changed "$kTree" "$before"
  steady "$kTree" >"$folder/picture"
}

select_expand_and_sort() {
  local before
  before=$(steady "$kList")
  xdotool getactivewindow mousemove --window %1 100 380 click 1
  await changed "$kList" "$before"
  select_function "lua.c#pm"
  before=$(steady "$kTree")
  press Right
  await changed "$kTree" "$before"
  before=$(steady "$kList")
  press alt+v l s
  await changed "$kList" "$before"
}

adjust_selected() {
  open_by alt+o s
  is_titled "$kAdjust"
  xdotool type --delay 15 100
  press Return
  await is_titled "$main"
  await has "lua.c#pmain, ADD=100"
}

# save_chains MENU_KEY FUNCTION NAME OPTION...: the selected function's report.
save_chains() {
  "$cli" chains "$folder/$input" "$2" "${@:4}" --output "$folder/cli-$3"
  give_file "$3" alt+f "$1"
  await is_titled "$main"
  await are_equal "$3" "cli-$3"
}

# state_next STATEMENT KEYS...: what is the first thing to state is stated in the dialog to which it
# leads, and the summary goes on to the next.
state_next() {
  local before
  before=$(steady "$kSummary")
  xdotool getactivewindow mousemove --window %1 680 138 click 1
  await is_titled "$kAdjust"
  "${@:2}"
  press Return
  await is_titled "$main"
  await has "$1"
  await changed "$kSummary" "$before"
}
type_bytes() { xdotool type --delay 15 "$1"; }
type_depth() { press alt+r; type_bytes "$1"; }
add_callees() {
  local callee
  for callee in "$@"; do
    press alt+f
    xdotool type --delay 15 "$callee"
    press alt+a
    sleep 1  # what is typed then begins a name
  done
  press shift+Tab
}

# save_picture NAME NEED: as it is once the answer is there.
save_picture() {
  open_by ctrl+shift+p
  xdotool type --delay 15 "$folder/$1"
  press Return
  await is_titled "$main"
  await test -s "$folder/$1"
  shows "$2" "$1"
}

# copied_bound FUNCTION: of its row among all functions, as the clipboard gets it.
copied_bound() {
  press ctrl+f
  xdotool type --delay 15 "$1"
  sleep 0.5
  press Down ctrl+shift+c
  sleep 0.5
  xclip -o -selection clipboard | tail -n 1 | cut -d, -f5
  press ctrl+shift+f
}
# find_and_adjust FUNCTION BYTES: from its row among all functions.
find_and_adjust() {
  press ctrl+f
  xdotool type --delay 15 "$1"
  sleep 0.5
  press Down
  open_by F2
  is_titled "$kAdjust"
  type_bytes "$2"
  press Return
  await is_titled "$main"
  await has "$1, ADD=$2"
  press ctrl+shift+f
}

has_bound() { [ "$(copied_bound "$1")" = "$2" ]; }

# find_function FUNCTION: by its name, wherever it is; and back to what was selected in the tree.
find_function() {
  local before
  before=$(steady "$kList")
  press ctrl+f
  xdotool type --delay 15 "$1"
  press Return
  save_chains m "$1" "$1.txt"
  press alt+Left ctrl+shift+f
  await is_picture "$kList" "$before"
}

load_specification_with_errors() {
  printf 'luaL_unref, ADD=5\nnobody, ADD=1\nluaL_loadstring, ADD=x\n' >"$folder/spec.txt"
  give_file spec.txt alt+f n
  await is_titled "$kBox"
  press alt+i
  await is_titled "$main"
  await has "luaL_unref, ADD=5"
  ! grep -q "nobody\|luaL_loadstring" "$folder/app.psg"
}

reset_all() {
  open_by alt+o a
  is_titled "$kBox"
  press alt+y
  await is_titled "$main"
  await test ! -s "$folder/app.psg"
}

# The toolkit's own dialogs speak the user's language, too.
ask_in_japanese() {
  main="app.prj - velkor"
  LC_ALL=ja_JP.UTF-8 "$velkor" --no-settings "$folder/app.prj" >"$folder/japanese.log" 2>&1 &
  children+=("$!")
  await is_titled "$main"
  open_by ctrl+o
  await is_titled 開く
}

# Lua lacks much more than is stated here: one function has a bound.
answer_project() {
  state_next "[_longjmp], ADD=16" type_bytes 16
  await has_bound os_clock "≥$(need loslib.c#os_clock)"
  find_and_adjust "[clock]" 8
  await has_bound os_clock "$(need loslib.c#os_clock)"
  save_picture project.svg "≥$(need lua.c#pmain)"
}

# What GCC leaves, and what it cannot know: stated from the summary until the program has a bound.
answer_gcc_folder() {
  input=gcc/velkor.toml
  adjustments=gcc/velkor.psg
  main="velkor.toml - velkor"
  open_project
  await has_bound main "≥$(need main)"
  save_picture open.svg "≥$(need main) / 16384"
  state_next "[write_number], ADD=48" type_bytes 48
  state_next "run_command, CALL=commands.c#command_show, CALL=commands.c#command_store" \
    add_callees command_show command_store
  find_function parse_expression
  state_next "parse_expression, RECTIME=63" type_depth 63
  state_next "[read_line], ADD=96" type_bytes 96
  await has_bound main "$(need main)"
  save_picture bound.svg "$(need main) / 16384"
}
# need FUNCTION: what the command line knows of it.
need() {
  "$cli" analyze "$folder/$input" --format json 2>/dev/null |
    jq ".functions[] | select(.specName == \"$1\").known"
}

compile_gcc_folder() {
  local source
  cp -r "$1" "$folder/gcc"
  sed -i /^load/d "$folder/gcc/velkor.toml"
  mkdir -p "$folder/gcc/build"
  (cd "$folder/gcc" && for source in *.c; do
    gcc -Os -fcallgraph-info=su,da -c "$source" -o "build/${source%.c}.o"
  done)
}

cp -r "$3/lua"/. "$folder"
compile_gcc_folder "$3/gcc"
start
open_project
select_expand_and_sort
adjust_selected
save_chains m "lua.c#pmain" max.txt
find_function luaV_finishset
select_function "lua_rawgetp"
save_chains s lua_rawgetp all.csv --all
load_specification_with_errors
answer_project
reset_all
answer_gcc_folder
press alt+f e
await is_ended "$window"
wait "$window"
ask_in_japanese
