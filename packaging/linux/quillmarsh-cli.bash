# Completion for quillmarsh-cli in bash.
_quillmarsh_cli() {
    local current=$2 previous=$3 command=${COMP_WORDS[1]} words='--help --json --lang --log --verbose'
    COMPREPLY=()
    case $previous in
    --lang)
        mapfile -t COMPREPLY < <(compgen -W 'en zh' -- "$current")
        return
        ;;
    --write-type)
        mapfile -t COMPREPLY < <(compgen -W 'usb hid' -- "$current")
        return
        ;;
    --file | --log)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    --md5 | --model | --wait) return ;;
    esac
    if [ "$COMP_CWORD" -eq 1 ]; then
        words='list update check manifest report'
        [[ $current != -* ]] || words='--help --version'
    elif [ "$command" = manifest ] && [ "$COMP_CWORD" -eq 2 ]; then
        words=verify
    elif [[ $command =~ ^(manifest|report)$ && $current != -* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    else
        case $command in
        list) words+=' --watch' ;;
        update) words+=' --file --md5 --model --no-reset --repeat --require-signature --wait --write-type --yes' ;;
        check) words+=' --model' ;;
        manifest) words+=' --download' ;;
        report) ;;
        *) return ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _quillmarsh_cli quillmarsh-cli
