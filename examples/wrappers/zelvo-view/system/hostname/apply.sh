#!/bin/sh
# apply.sh makes the system use the stored value. Its environment is one variable,
# LAST_APPLY_COMMAND, the name of a file. The script can write into it what has to follow once every
# apply.sh of the request is done: "reboot", "logout", "restart-display", "restart-desktop", or a
# command line of its own. The plugin does only the strongest of all that were asked for, once.
#
# There is no PATH: a script that runs more than the shell's own commands sets one.
echo logout >"$LAST_APPLY_COMMAND"
