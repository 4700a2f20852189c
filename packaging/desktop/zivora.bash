# Completion of zivora for bash. Commands, options, formats and fields are what the program's own help says of them.

# What can stand for a value of the kind VALUE, the name that the help gives it: formats, fields, or nothing where a name of a file goes.
# _zivora_values VALUE HELP
_zivora_values()
{
    local fields
    case $1 in
        *\{*\}*)
            fields=${1#*\{}
            fields=${fields%%\}*}
            echo "${fields//,/ }"
            ;;
        # The errors are always a column of their own.
        FIELDS) sed -n '/^Fields:/,/^$/{/^  error/d;s/^  \([a-z]*\) .*/\1/p}' <<<"$2" ;;
        FIELD | CONDITION) sed -n '/^Fields:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$2" ;;
    esac
}

_zivora()
{
    local program=$1 current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local word command='' help value='' start=''
    # bash takes the = of --option=value for a word.
    if [ "$current" = = ]; then
        current=
    elif [ "$previous" = = ]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()

    help=$("$program" --help 2>/dev/null) || return
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]] && grep -q "^  $word " <<<"$help"; then
            command=$word
            help=$("$program" "$command" --help 2>/dev/null) || return
            break
        fi
    done

    if [[ $previous == -* ]]; then
        value=$(sed -n "s/^  \(-.,\)\{0,1\}$previous \([A-Z]\{1,\}[^ ]*\).*/\2/p" <<<"$help")
    fi
    if [ -n "$value" ]; then
        # A field can stand after others, after a minus, or in the middle of a condition in quotation marks.
        case $value in
            FIELD) start=${current%%[!-]*} ;;
            FIELDS) [[ $current != *,* ]] || start=${current%,*}, ;;
            CONDITION)
                compopt -o nospace 2>/dev/null
                current=${current#[\"\']}
                start=${current%"${current##*[ (]}"}
                ;;
        esac
        mapfile -t COMPREPLY < <(compgen -P "$start" -W "$(_zivora_values "$value" "$help")" -- "${current#"$start"}")
        # After a single word bash would close the quotation marks of the condition.
        [ "$value:${#COMPREPLY[@]}" != CONDITION:1 ] || COMPREPLY=("${COMPREPLY[0]}"{=,!=,'<','<=','>','>=','~'})
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(grep -oE '^  (-.,)?--[a-z-]+' <<<"$help" | sed 's/.*--/--/')" -- "$current")
    elif [ -z "$command" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$(sed -n '/^Subcommands:/,$s/^  \([a-z]\{1,\}\) .*/\1/p' <<<"$help")" -- "$current")
    elif grep -q '^  FOLDER ' <<<"$help"; then
        compopt +o default -o dirnames 2>/dev/null
    fi
}

# Where nothing comes of it, names of files do.
complete -o bashdefault -o default -F _zivora zivora
