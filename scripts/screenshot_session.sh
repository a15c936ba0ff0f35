# What scripts/screenshot does on its display: opens the project, selects its largest function,
# sorts the list and takes the picture.
set -euo pipefail
output=$1
# The log shows where the files are: nothing of this machine belongs into the picture.
folder=$(mktemp -d /tmp/velkor.XXXX)
trap 'rm -rf "$folder"' EXIT
cp -r examples/lua "$folder/lua"
cp -r build/release/dattarn "$folder/dattarn"
openbox &
build/release/bin/velkor --no-settings --data "$folder/dattarn" "$folder/lua/app.prj" &
program=$!
window=$(xdotool search --sync --onlyvisible --name velkor | head -1)
xdotool windowsize --sync "$window" 1270 690
xdotool windowmove "$window" 2 22
xdotool windowactivate --sync "$window"
sleep 5
xdotool mousemove --window "$window" 100 70 click 1
sleep 1
xdotool type "lua.c#pm"
sleep 2
xdotool key Right
sleep 1
import -window root "$output"
kill "$program"
