# desktop_entry.sh ROOT PICTURE: opens a project in the window that is installed in the tree ROOT, by
# the command of its desktop entry, on a display of its own, and takes its picture. What
# scripts/test_packages does with each tree.
set -euo pipefail
tree=$1
picture=$2
if [ -z "${VELKOR_ON_DISPLAY:-}" ]; then
  VELKOR_ON_DISPLAY=1 exec xvfb-run -a -l -s "-screen 0 1280x720x24 -ac -listen tcp" bash "$0" "$tree" "$picture"
fi
command=$(sed -n 's/^Exec=//p' "$tree/usr/share/applications/velkor.desktop")
command=${command//%f//velkor/examples/firmware/app.prj}
chroot "$tree" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/root LC_ALL=C.UTF-8 \
  DISPLAY="127.0.0.1$DISPLAY" sh -c "exec $command" 2>"$tree/velkor/log" &
program=$!
trap 'kill "$program" 2>/dev/null || true' EXIT
title=
for _ in $(seq 100); do
  kill -0 "$program" 2>/dev/null || { cat "$tree/velkor/log" >&2; exit 1; }
  title=$(xdotool search --onlyvisible --name ' - velkor$' getwindowname 2>/dev/null | head -1) || true
  [[ $title != app* ]] || break
  sleep 0.5
done
[[ $title == app* ]] || { echo "no window of the project: \"$title\"" >&2; exit 1; }
sleep 2
import -window root "$picture"
echo "window: $title"
