# Completion of orcalin for fish.

complete -c orcalin -f
complete -c orcalin -s h -l help -d 'Muestra la ayuda'
complete -c orcalin -n __fish_use_subcommand -l version -d 'Muestra la versión'
complete -c orcalin -n __fish_use_subcommand -a compress -d 'Guarda ficheros y carpetas en un archivo'
complete -c orcalin -n __fish_use_subcommand -a list -d 'Muestra lo que hay en un archivo'
complete -c orcalin -n __fish_use_subcommand -a extract -d 'Saca lo que hay en un archivo'
complete -c orcalin -n __fish_use_subcommand -a check -d 'Lee un archivo entero y dice si está sano'

complete -c orcalin -n '__fish_seen_subcommand_from compress list extract check' -r -F -l password-file -d 'La contraseña es lo que contiene el fichero'
complete -c orcalin -n '__fish_seen_subcommand_from list extract check' -l no-remember -d 'No recuerda la clave durante un minuto'
complete -c orcalin -n '__fish_seen_subcommand_from list extract check' -k -a '(__fish_complete_suffix .okz)'

complete -c orcalin -n '__fish_seen_subcommand_from compress' -F
complete -c orcalin -n '__fish_seen_subcommand_from compress' -s o -r -F -d 'Archivo que se escribe'
complete -c orcalin -n '__fish_seen_subcommand_from compress' -l level -x -a '1 3 9 19 22' -d 'Nivel de compresión'
complete -c orcalin -n '__fish_seen_subcommand_from compress' -l max -d 'Lo más pequeño posible, sin prisa'
complete -c orcalin -n '__fish_seen_subcommand_from compress' -l encrypt -d 'Cifra con contraseña, nombres incluidos'
complete -c orcalin -n '__fish_seen_subcommand_from compress' -l progress -d 'Cuenta cómo va también si no hay terminal'
complete -c orcalin -n '__fish_seen_subcommand_from compress' -l no-verify -d 'No vuelve a leer del disco lo guardado'

complete -c orcalin -n '__fish_seen_subcommand_from extract' -s o -x -a '(__fish_complete_directories)' -d 'Carpeta en la que se deja'
complete -c orcalin -n '__fish_seen_subcommand_from extract' -l file -x -d 'Solo esta entrada, como la muestra list'
complete -c orcalin -n '__fish_seen_subcommand_from extract' -l replace -d 'Lo que sale reemplaza a lo que haya'
