#!/bin/sh
# get.sh prints the value. Every character counts, a newline too, so there is none here.
#
# A get.sh that fails, as this one does while no name was committed, has no value: the key then
# answers with its default.
cat /var/lib/zelvo-example/hostname 2>/dev/null
