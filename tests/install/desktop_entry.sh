# desktop_entry.sh ROOT PICTURE: opens a project in the window that is installed in the tree ROOT, by
# the command of its desktop entry, on a display of its own, and takes its picture. What
# scripts/test_packages does with each tree.
set -euo pipefail
tree=$1
picture=$2
if [ -z "${VELKOR_ON_DISPLAY:-}" ]; then
  VELKOR_ON_DISPLAY=1 exec xvfb-run -a -l -s "-screen 0 1280x720x24 -ac" bash "$0" "$tree" "$picture"
fi
command=$(sed -n 's/^Exec=//p' "$tree/usr/share/applications/velkor.desktop")
command=${command//%f//velkor/examples/firmware/app.prj}
chroot "$tree" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/root LC_ALL=C.UTF-8 \
  DISPLAY="127.0.0.1$DISPLAY" sh -c "exec $command" 2>"$tree/velkor/log" &
program=$!
trap 'kill "$program" 2>/dev/null || true' EXIT
window=$(timeout 60 xdotool search --sync --onlyvisible --name 'velkor' | head -1)
[ -n "$window" ] || { cat "$tree/velkor/log" >&2; exit 1; }
for _ in $(seq 60); do
  title=$(xdotool getwindowname "$window")
  [[ $title == *app* ]] && break
  sleep 1
done
[[ $title == *app* ]] || { echo "the window's title is $title" >&2; exit 1; }
import -window root "$picture"
echo "window: $title"
