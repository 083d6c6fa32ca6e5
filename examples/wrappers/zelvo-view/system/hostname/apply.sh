#!/bin/sh
# apply.sh makes the stored value effective. Its environment is one variable, LAST_APPLY_COMMAND: a
# file into which it can write what must happen once every apply.sh of the request is done:
# "reboot", "logout", "restart-display", "restart-desktop", or a command line of its own. Of all
# that was asked for only the strongest is done, once.
#
# There is no PATH: a script that runs more than the shell's own commands sets one.
echo logout >"$LAST_APPLY_COMMAND"
