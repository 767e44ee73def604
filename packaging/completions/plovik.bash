# SPDX-License-Identifier: GPL-3.0-or-later
# Completes plovik in bash: options until "--" ends them; bash adds the folders, quoted as the line needs them.

_plovik() {
    local current=${COMP_WORDS[COMP_CWORD]} word
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == -- ]] && return
    done
    ((COMP_CWORD == 1)) && [[ $current != -* ]] && mapfile -t COMPREPLY < <(compgen -W 'clone init' -- "$current")
    [[ $current == -* ]] && mapfile -t COMPREPLY < <(compgen -W '--help --version --' -- "$current")
    return 0
}

complete -o plusdirs -F _plovik plovik
