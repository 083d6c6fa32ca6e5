#!/bin/sh
# Prints the note on top; without any note there is no value.
test -s /var/lib/zelvo-example/notes || exit 1
tail -n 1 /var/lib/zelvo-example/notes | tr -d '\n'
