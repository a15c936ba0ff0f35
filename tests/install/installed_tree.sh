# installed_tree.sh SOURCE BUILD cli|window: the installed tree, moved away, does what the build does,
# and its pages say what the programs say.
. "$(dirname "$0")/common.sh"
components=(cli)
[ "$3" = cli ] || components+=(window)
install_tree "${components[@]}"
tree=$scratch/installed
cli=$tree/bin/velkor-cli

# The same analysis, with the installed tables.
cp -r "$source/examples/firmware" "$scratch/firmware"
project=$scratch/firmware/app.prj
"$cli" analyze "$project" --format json >"$scratch/installed.json" 2>"$scratch/log"
grep -qF "$tree/share/velkor/ltr.txt Reading completed." "$scratch/log" || fail "other tables: $(cat "$scratch/log")"
"$build/bin/velkor-cli" analyze "$project" --format json 2>/dev/null |
  sed "s|$(realpath "$build")/dattarn/|$tree/share/velkor/|g" |
  cmp - "$scratch/installed.json"
# A table that is missing among them is missed.
mv "$tree/share/velkor/ltr.txt" "$scratch/"
"$cli" analyze "$project" >/dev/null 2>"$scratch/log" || true
grep -q "^W9427 " "$scratch/log" || fail "no W9427: $(cat "$scratch/log")"
mv "$scratch/ltr.txt" "$tree/share/velkor/"

# Nothing of the machine that built it.
if grep -rlF -e "$scratch/first" -e "$build" "$tree/share"; then
  fail "names the folder of the build"
fi
for file in schema/analyze.schema.json statements/newlib.txt targets.toml; do
  [ -s "$tree/share/velkor/$file" ] || fail "no $file"
done

# Each option that --help shows stands in the page of its command, and the pages are well formed.
page() {
  zcat "$tree/share/man/man1/$1.1.gz" | sed 's/\\-/-/g'
}
says_options_of() {
  local page=$1 option
  shift
  page "$page" >"$scratch/page"
  for option in $("$@" --help | grep -oE '^ +(-., ?)?--[a-z-]+' | grep -oE -- '--[a-z-]+'); do
    [ "$option" = --version ] && [ "$page" != velkor-cli ] && continue
    grep -qF -- "\\fB$option\\fR" "$scratch/page" || fail "$page does not say $option"
  done
}
says_options_of velkor-cli "$cli"
commands=$("$cli" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]\+\) .*/\1/p')
[ "$(wc -w <<<"$commands")" -gt 10 ] || fail "commands: $commands"
for command in $commands; do
  says_options_of "velkor-cli-$command" "$cli" "$command"
done
# Each key that is read stands in the page of the configuration.
zcat "$tree/share/man/man5/velkor.toml.5.gz" >"$scratch/page"
for key in $(grep -oE '\{"[a-z]+", &ConfigurationReader' "$source/src/readers/configuration.cpp" |
             grep -oE '[a-z]+"' | tr -d '"'); do
  grep -qE "(^|[^a-z])$key([^a-z]|\$)" "$scratch/page" || fail "velkor.toml(5) lacks $key"
done
if command -v mandoc >/dev/null; then
  for file in "$tree"/share/man/man*/*.gz; do
    zcat "$file" | mandoc -T lint -W warning || fail "$file"
  done
fi

[ "$3" = window ] || exit 0
[ "$("$tree/bin/velkor" --version)" = "$("$cli" --version)" ] || fail "versions differ"
says_options_of velkor "$tree/bin/velkor"
folder=$(sed -n 's/^Folder=//p' "$tree/share/velkor/help.ini")
for name in $(sed -n 's/^HelpTopic.=//p' "$tree/share/velkor/help.ini"); do
  [ -s "$tree/bin/$folder$name" ] || fail "no page $folder$name"
done
for size in 16 22 24 32 48 64 128 256; do
  file=$tree/share/icons/hicolor/${size}x$size/apps/velkor.png
  [ "$(identify -format '%wx%h %k' "$file" | sed 's/ .*//')" = "${size}x$size" ] || fail "$file"
done
[ -s "$tree/share/icons/hicolor/scalable/apps/velkor.svg" ] || fail "no drawing"
if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate "$tree/share/applications/velkor.desktop"
fi
