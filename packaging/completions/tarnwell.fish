# Completion of tarnwell in fish. The program takes one word.
complete -c tarnwell -f
complete -c tarnwell -n __fish_use_subcommand -a serve -d 'Run as a stdio MCP server'
complete -c tarnwell -n __fish_use_subcommand -a test-connection -d 'Log in with the saved settings and look at INBOX'
complete -c tarnwell -n __fish_use_subcommand -a status -d 'Print the safety settings and readiness as JSON'
complete -c tarnwell -n __fish_use_subcommand -a print-config -d 'Print the configuration for an MCP client'
complete -c tarnwell -n __fish_use_subcommand -a help -d 'Print the usage'
