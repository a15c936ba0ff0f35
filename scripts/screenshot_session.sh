# What scripts/screenshot does on its display: opens the project, selects its largest function,
# sorts the list and takes the picture.
set -euo pipefail
output=$1
openbox &
build/release/bin/velkor examples/lua/app.prj &
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
