# Completion of zuconfig in bash 4.4 and later. File names are left to bash, which knows how to quote
# them: it completes one whenever there is no answer here.

declare -A _zuconfig_options=(
  [check]='-I --format --help --ignore --no-validate --schema --strict --validate'
  [diff]='-I --help --null --schema --validate'
  [dump]='-I --format --help --null --prefix --schema --validate'
  [errors]='--help'
  [explain]='-I --help --schema --validate'
  [get]='-I --all --default --help --null --origin --schema --validate'
  [includes]='-I --format --help'
  [list]='-I --help --null --schema --validate'
  [path]='-I --help --null'
  [schema]='--help'
  [tree]='-I --help --origins --schema --validate'
)
declare -A _zuconfig_values=(
  [check --format]='json sarif text'
  [check --ignore]='entity-element shadowed-file unknown-element unreachable-name xml'
  [dump --format]='json paths sh xml'
  [includes --format]='dot json tree'
)

# The properties and sections of a file that come next in a selector.
_zuconfig_selectors() {  # WORD COMMAND LIST_ARGUMENT...
  local word=$1 quote='' in_name='' section='' entry i
  shift
  # A word that begins with a quote goes on in it; any other has its brackets escaped.
  if [[ $word == [\'\"]* ]]; then
    quote=${word:0:1}
    word=${word:1}
  fi
  [[ $quote == "'" ]] || word=${word//\\/}
  # The section is what stands before the last dot that is not in a quoted name.
  for ((i = 0; i < ${#word}; ++i)); do
    case ${word:i:1} in
      '"') [[ $in_name ]] && in_name='' || in_name=1 ;;
      .) [[ $in_name ]] || section=${word:0:i} ;;
    esac
  done
  [[ $section != *\** ]] || return  # it stands for many

  # An entry with a line break has a value: what should be a section is a property.
  while IFS= read -rd '' entry; do
    entry=${section:+$section.}$entry
    [[ $entry == "$word"* && $entry != *$'\n'* ]] || continue
    case $quote in
      '') printf -v entry %q "$entry" ;;
      '"')
        entry=${entry//\"/\\\"}
        [[ $entry != *\" ]] || entry+=\"  # bash takes the last one for the end of the word
        ;;
    esac
    COMPREPLY+=("$entry")
  done < <("$1" list -0 "${@:2}" ${section:+"$section"} 2>/dev/null </dev/null)

  # A section alone is completed by what it holds; bash would close the quote otherwise.
  if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *. ]]; then
    entry=${COMPREPLY[0]}
    COMPREPLY=()
    _zuconfig_selectors "$quote$entry" "$@"
    if ((${#COMPREPLY[@]} == 0)); then
      COMPREPLY=("$entry")
      compopt -o nospace
    fi
  fi
}

# The text that the shell makes of a word, unless it holds more than plain text.
_zuconfig_unquote() {  # WORD
  case $1 in
    \'*\' | \"*\") printf %s "${1:1:-1}" ;;
    *)
      local word
      IFS= read -d '' word < <(printf '%s\0' "$1")  # takes the backslashes off
      printf %s "${word/#\~/$HOME}"
      ;;
  esac
}

_zuconfig() {  # COMMAND
  local tool rest=$COMP_LINE words=() files=() directories=() part i
  tool=$(_zuconfig_unquote "$1")
  COMPREPLY=()

  # The words as the command gets them; bash splits them at "=" and ":", too.
  for part in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
    if [[ ${#words[@]} -eq 0 || $rest == [[:space:]]* ]]; then
      words+=('')
      rest=${rest#"${rest%%[![:space:]]*}"}
    fi
    words[-1]+=$part
    rest=${rest#"$part"}
  done

  # What stands between the sub-command and the word to complete.
  for ((i = 2; i < ${#words[@]} - 1; ++i)); do
    case ${words[i]} in
      -I) ((++i)) && directories+=(-I "$(_zuconfig_unquote "${words[i]}")") ;;
      --default | --format | --ignore | --prefix | --schema) ((++i)) ;;
      -?*) ;;
      *) files+=("$(_zuconfig_unquote "${words[i]}")") ;;
    esac
  done

  local word=${words[-1]} option=${words[-2]} choices='' command=''
  ((${#words[@]} == 2)) || command=${words[1]}
  if [[ $word == --*=* ]]; then
    option=${word%%=*}
    word=${word#*=}
  fi
  case $command:$option in
    ?*:-I) compopt +o bashdefault +o default -o dirnames; return ;;
    ?*:--schema) return ;;
    ?*:--default | ?*:--prefix) ;;
    ?*:--format | ?*:--ignore) choices=${_zuconfig_values[$command $option]} ;;
    :*) choices="${!_zuconfig_options[*]} --help --help-all --version" ;;
    *)
      case $command:${#files[@]}:$word in
        *:-*) choices=${_zuconfig_options[$command]} ;;
        errors:0:*) choices=$("$tool" errors | cut -f2) ;;
        errors:* | schema:*) ;;
        *:0:* | diff:1:* | check:*) return ;;
        explain:1:* | get:1:* | list:1:*)
          [[ ${files[0]} == - ]] ||
            _zuconfig_selectors "$word" "$tool" "${directories[@]}" -- "${files[0]}"
          ;;
      esac
      ;;
  esac
  compopt +o bashdefault +o default
  [[ ! $choices ]] || COMPREPLY=($(compgen -W "$choices" -- "$word"))
}

complete -o bashdefault -o default -F _zuconfig zuconfig
