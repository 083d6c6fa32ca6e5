#!/bin/sh
# The value may be any text, with lines and quotes: it is copied and never passes through the shell.
# The file is empty when nothing was set before the commit: the old banner stays then, and del.sh is
# what takes it away.
set -e
test -s "$1"
mkdir -p /var/lib/zelvo-example
cp "$1" /var/lib/zelvo-example/banner
