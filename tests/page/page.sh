#!/bin/bash
# page.sh PROGRAM BROWSER: writes the page of the report for a program with names that are markup,
# and looks at it in a browser: wide, narrow, printed. What drive.js does in it must find nothing.
set -euo pipefail
program=$1
browser=$2
if [ ! -x "$browser" ]; then
  echo "skipped: no browser"
  exit 77
fi
here=$(realpath "$(dirname "$0")")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp -r "$here/../../examples/firmware" "$folder/app"
cd "$folder"

# Names of top-level functions become markup, hold a control character, are very long: in the
# symbols and in the records.
long=$(printf 'n%.0s' $(seq 5000))
sed -i "s/timer_isr/<b>bold\&amp;\"<\/b>/g; s|command_reset|<img/src=x/onerror=document.title=1>|g
        s/command_show/$long/g; s/uart_isr/esc\x1b[31m/g" app/asm/*.asm
"$program" report app/app.prj --output page.html 2>log || { cat log; exit 1; }
grep -q '&lt;b&gt;bold&amp;amp;&quot;&lt;/b&gt;' page.html && grep -q '&lt;img/src=x/onerror' page.html ||
  { echo "the names are not what they should be"; exit 1; }
if grep -nE '(src|href)="[^#d]|https?:|@import|url\([^#]' page.html; then
  echo "the page refers to something outside itself"
  exit 1
fi
{ sed '/<\/body>/,$d' page.html; echo "<script>"; cat "$here/drive.js"; echo "</script></body></html>"; } >driven.html

browse() {
  timeout 120 "$browser" --headless=new --no-sandbox --disable-gpu --user-data-dir="$folder/profile" \
    --no-first-run --disable-background-networking --disable-component-update --disable-sync "$@" \
    2>>browser.log
}
status=0
for width in 1400 500; do
  browse --window-size=$width,900 --virtual-time-budget=5000 --dump-dom "file://$folder/driven.html" >dom
  found=$(sed -n 's/.*<pre id="found">\(.*\)<\/pre>.*/\1/p' dom)
  if [ "$found" != "all is well" ]; then
    echo "$width wide: ${found:-the page did not answer}"
    status=1
  fi
done
browse --no-pdf-header-footer --print-to-pdf="$folder/page.pdf" "file://$folder/page.html"
if [ "$(head -c 5 page.pdf)" != "%PDF-" ] || [ "$(stat -c %s page.pdf)" -lt 20000 ]; then
  echo "the page did not print"
  status=1
fi
[ "$status" -eq 0 ] || tail -5 browser.log
exit "$status"
