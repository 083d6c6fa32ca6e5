#!/bin/sh
# set.sh gets a value in the file $1 and prints the value to keep until the commit. This one trims
# the value and writes it in lower case.
#
# A set.sh stores nothing and can refuse nothing: when it fails, the plugin keeps the value as it
# came. commit.sh can refuse.
tr 'A-Z' 'a-z' <"$1" | tr -d '\n' | sed 's/^[[:space:]]*//; s/[[:space:]]*$//' | tr -d '\n'
