#!/bin/sh
# The value may be any text, with lines and quotes: this script copies it, so it never passes
# through the shell. The file is empty when nothing was set before the commit. Then the old banner
# stays; del.sh removes it.
set -e
test -s "$1"
mkdir -p /var/lib/zelvo-example
cp "$1" /var/lib/zelvo-example/banner
