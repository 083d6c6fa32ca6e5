#!/bin/sh
# set.sh is given a value in the file $1 and prints the value to keep until the commit. This one
# trims it and writes it in lower case.
#
# Nothing is stored here, and nothing is refused: after a set.sh that fails, the value is kept as it
# came. Refusing is for commit.sh.
tr 'A-Z' 'a-z' <"$1" | tr -d '\n' | sed 's/^[[:space:]]*//; s/[[:space:]]*$//' | tr -d '\n'
