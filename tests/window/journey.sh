# journey.sh VELKOR VELKOR_CLI PROJECT_FOLDER: works the window with keys and mouse, from its start to
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
readonly kTree=170x500+5+80 kList=780x250+215+80
readonly kMain="app.prj - velkor" kBox="velkor"

is_patient() { ((SECONDS < kEnd)); }
await() { until "$@"; do is_patient || return 1; sleep 0.05; done; }
try() { for _ in {1..100}; do if "$@"; then return 0; fi; sleep 0.05; done; return 1; }

press() { xdotool key --delay 60 "$@"; }
title() { xdotool getactivewindow getwindowname 2>/dev/null || true; }
is_titled() { [ "$(title)" = "$1" ]; }
is_other() { [ -n "$(title)" ] && ! is_titled "$1"; }
has() { grep -qsx "$1"$'\r' "$folder/app.psg"; }
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
  give_file app.prj ctrl+o
  await is_titled "$kMain"
  await changed "$kTree" "$before"
  steady "$kTree" >"$folder/picture"
}

select_expand_and_sort() {
  local before
  before=$(steady "$kList")
  xdotool getactivewindow mousemove --window %1 100 140 click 1
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
  is_titled "Adjust Stack Size"
  xdotool type --delay 15 100
  press Return
  await is_titled "$kMain"
  await has "lua.c#pmain, ADD=100"
}

# save_chains MENU_KEY FUNCTION NAME OPTION...: the selected function's report.
save_chains() {
  "$cli" chains "$folder/app.prj" "$2" "${@:4}" --output "$folder/cli-$3"
  give_file "$3" alt+f "$1"
  await is_titled "$kMain"
  await are_equal "$3" "cli-$3"
}

# find_function FUNCTION: by its name, wherever it is; and back to what was selected in the tree.
find_function() {
  local before
  before=$(steady "$kList")
  press ctrl+f
  xdotool type --delay 15 "$1"
  press Return
  save_chains m "$1" found.txt
  press alt+Left ctrl+shift+f
  await is_picture "$kList" "$before"
}

load_specification_with_errors() {
  printf 'luaL_unref, ADD=5\nnobody, ADD=1\nluaL_loadstring, ADD=x\n' >"$folder/spec.txt"
  give_file spec.txt alt+f n
  await is_titled "$kBox"
  press alt+i
  await is_titled "$kMain"
  await has "luaL_unref, ADD=5"
  ! grep -q "nobody\|luaL_loadstring" "$folder/app.psg"
}

reset_all() {
  open_by alt+o a
  is_titled "$kBox"
  press alt+y
  await is_titled "$kMain"
  await test ! -s "$folder/app.psg"
}

# The toolkit's own dialogs speak the user's language, too.
ask_in_japanese() {
  LC_ALL=ja_JP.UTF-8 "$velkor" --no-settings "$folder/app.prj" >"$folder/japanese.log" 2>&1 &
  children+=("$!")
  await is_titled "$kMain"
  open_by ctrl+o
  await is_titled 開く
}

cp -r "$3"/. "$folder"
start
open_project
select_expand_and_sort
adjust_selected
save_chains m "lua.c#pmain" max.txt
find_function luaV_finishset
select_function "lua_rawgetp"
save_chains s lua_rawgetp all.csv --all
load_specification_with_errors
reset_all
press alt+f e
await is_ended "$window"
wait "$window"
ask_in_japanese
