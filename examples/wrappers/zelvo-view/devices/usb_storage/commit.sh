#!/bin/sh
# Keeps a journal of what was replaced. The keys to commit are those of set.env: this runs once for
# each of them, in any order, with the key in REG_SET and before it is written.
#
# A commit.sh that succeeds takes the place of the registry's commit. This one only looks on, so it
# fails on purpose, and the registry writes the value.
case $REG_SET in
    */allowed) former=$ALLOWED ;;
    *) former=$READ_ONLY ;;
esac
mkdir -p /var/lib/zelvo-example
printf '%s was %s\n' "${REG_SET##*/}" "$former" >>/var/lib/zelvo-example/usb-journal
exit 1
