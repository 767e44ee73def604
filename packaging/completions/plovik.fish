# SPDX-License-Identifier: GPL-3.0-or-later
# Completes plovik in fish: folders, and options until "--" ends them.

complete -c plovik -f -a '(__fish_complete_directories)'
complete -c plovik -n '__fish_not_contain_opt help version' -l help -d 'Print how the command is used, and quit'
complete -c plovik -n '__fish_not_contain_opt help version' -l version -d 'Print the version, and quit'
complete -c plovik -n __fish_use_subcommand -a clone -d 'Clone a repository and open it'
complete -c plovik -n __fish_use_subcommand -a init -d 'Make a repository and open it'
