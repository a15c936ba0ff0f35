# Completion of velkor-cli for bash: commands, options, choices, files, and the functions of the
# project that the line names.

# @TABLES@
# What was typed, without quotes and backslashes.
_velkor_cli_plain() {
  local word=${1//[\'\"\\]/}
  case $word in
    '~' | '~/'*) word=$HOME${word#\~} ;;
  esac
  printf '%s' "$word"
}

# The functions that the current word begins; $1 stands behind each.
_velkor_cli_functions() {
  local typed name
  typed=$(_velkor_cli_plain "$cur")
  compopt -o nosort 2>/dev/null
  [ -z "$1" ] || compopt -o nospace
  while IFS= read -r name; do
    if [[ $name == "$typed"* ]]; then
      # Within quotes nothing more is to be quoted.
      [[ $cur == [\'\"]* ]] || printf -v name %q "$name"
      COMPREPLY+=("$name$1")
    fi
  done < <("$(_velkor_cli_plain "${words[0]}")" names "${project[@]}" -q 2>/dev/null)
}

_velkor_cli_word() {
  case $1 in
    choices*) COMPREPLY=($(compgen -W "${1#choices}" -- "$cur")) ;;
    file | FILE | OLD | NEW) _filedir ;;
    folder) _filedir -d ;;
    function | FUNCTION) _velkor_cli_functions '' ;;
    entry) _velkor_cli_functions = ;;
    INPUT) _filedir '@(prj|toml)' ;;
  esac
}

_velkor_cli() {
  local cur prev words cword
  _get_comp_words_by_ref -n '=:' cur prev words cword
  if [ "$cword" -eq 1 ]; then
    COMPREPLY=($(compgen -W "$_velkor_cli_commands --help --version" -- "$cur"))
    return
  fi

  local command=${words[1]} project=() arguments=0 i word value
  for ((i = 2; i < cword; ++i)); do
    word=${words[i]}
    value=$(_velkor_cli_value "$command" "${word%%=*}")
    case $word in
      --map=* | --codepage=* | --load=*)
        project+=("$(_velkor_cli_plain "$word")") ;;
      --map | --codepage | --load)
        project+=("$word" "$(_velkor_cli_plain "${words[i + 1]}")")
        ((i += 1)) ;;
      -*)
        if [ -n "$value" ] && [[ $word != *=* ]]; then
          ((i += 1))
        fi ;;
      *)
        [ "$arguments" -gt 0 ] || project+=("$(_velkor_cli_plain "$word")")
        ((arguments += 1)) ;;
    esac
  done
  [ "$arguments" -gt 0 ] || [ "$command" != check ] || project+=(velkor.toml)

  if [[ $cur == --*=* ]]; then
    value=$(_velkor_cli_value "$command" "${cur%%=*}")
    cur=${cur#*=}
    _velkor_cli_word "$value"
  elif [ "$i" -gt "$cword" ]; then
    _velkor_cli_word "$(_velkor_cli_value "$command" "$prev")"
  elif [[ $cur == -* ]]; then
    COMPREPLY=($(compgen -W "$(_velkor_cli_options "$command")" -- "$cur"))
  else
    word=($(_velkor_cli_arguments "$command"))
    _velkor_cli_word "${word[arguments]}"
  fi
  __ltrim_colon_completions "$cur"
}

complete -F _velkor_cli velkor-cli
