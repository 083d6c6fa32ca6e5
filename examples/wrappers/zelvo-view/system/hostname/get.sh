#!/bin/sh
# get.sh prints the value. Every character counts, a newline too, so there is none here.
#
# A get.sh that fails has no value, and the key then has its default. This one fails while nobody
# has committed a name.
cat /var/lib/zelvo-example/hostname 2>/dev/null
