# completion.sh SOURCE BUILD: what Tab makes of lines in a bash on a terminal.
. "$(dirname "$0")/common.sh"
script=/usr/share/bash-completion/bash_completion
[ -e "$script" ] || fail "no $script"
install_tree cli
cp -r "$source/examples/firmware" "$scratch/firmware"
cat >"$scratch/rc" <<EOF
. $script
. $scratch/installed/share/bash-completion/completions/velkor-cli
bind 'set bell-style none' 'set completion-query-items 0' 'set page-completions off'
PATH=$scratch/installed/bin:\$PATH PS1= HISTFILE=
cd $scratch/firmware
print_words() { printf '%s\n' "\$@" >$scratch/words; }
EOF

# completes TYPED WORD...: TYPED, where each | is the Tab key, becomes a line of these words.
completes() {
  local typed=$1
  shift
  rm -f "$scratch/words"
  # An end of the line that runs nothing but tells the words, as the shell takes them.
  (
    printf 'alias velkor-cli="velkor-cli"\n'
    printf '%s' "${typed//|/$'\t'}"
    printf '\001print_words \n exit\n'
  ) | TERM=dumb script -qec "bash --noprofile --rcfile $scratch/rc -i" /dev/null >"$scratch/terminal" 2>&1
  printf '%s\n' "$@" | cmp -s - "$scratch/words" ||
    fail "$typed gives $(tr '\n' ' ' <"$scratch/words"), not $*: $(cat -v "$scratch/terminal")"
}
completes 'velkor-cli ana|' velkor-cli analyze
completes 'velkor-cli analyze app.pr|--form|js|' velkor-cli analyze app.prj --format json
completes 'velkor-cli analyze app.prj --format=cs|' velkor-cli analyze app.prj --format=csv
completes 'velkor-cli explain app.prj command_res|' velkor-cli explain app.prj command_reset
completes 'velkor-cli chains -q app.prj parser.c#parse_t|--al|' \
  velkor-cli chains -q app.prj parser.c#parse_term --all
completes "velkor-cli explain --load lim| app.prj '[eeprom|" \
  velkor-cli explain --load limits.txt app.prj '[eeprom_write]'
completes 'velkor-cli adjust app.prj main --callee command_sh|' \
  velkor-cli adjust app.prj main --callee command_show
completes 'velkor-cli check app.prj --limit timer|64' velkor-cli check app.prj --limit timer_isr=64
