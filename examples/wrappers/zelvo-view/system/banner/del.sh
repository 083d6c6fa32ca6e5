#!/bin/sh
# del.sh removes the value. Then get.sh fails, and the key has its default. Nobody looks at the exit
# code of del.sh: the key counts as deleted once the script has run.
rm -f /var/lib/zelvo-example/banner
