# Completion of tonequill-cli for bash.
_tonequill_cli() {
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]-}
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "add list search find show delete credits name analyze peaks listen parts export render save fcpxml sync mix --help --version" -- "$word")
    elif [[ $word == -* ]]; then
        local options="--help --json"
        case $command in
        add) options+=" --all-parts --max --effects --keep-source --raw --library" ;;
        list | search | show | delete | credits) options+=" --library" ;;
        find) options+=" --limit --max-seconds --plan" ;;
        name) options+=" --all --library" ;;
        sync) options+=" --folder" ;;
        save | fcpxml) options+=" --to --library" ;;
        peaks) options+=" --bins" ;;
        listen) options+=" --start --end --top" ;;
        parts) options+=" --max" ;;
        export) options+=" --start --end --preset --fade-in --fade-out" ;;
        render) options+=" --start --end --preset --effects" ;;
        mix) options+=" --preset" ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    elif [[ $command =~ ^(show|delete|credits|name|save|fcpxml)$ ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(tonequill-cli list 2>/dev/null | cut -d' ' -f1)" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -o filenames -F _tonequill_cli tonequill-cli
