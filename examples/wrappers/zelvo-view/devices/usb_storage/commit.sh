#!/bin/sh
# Keeps a journal of the values that a commit replaces. The keys to commit are those of set.env:
# this script runs once for each of them, in any order, with the key in REG_SET, before the registry
# writes it.
#
# A commit.sh that succeeds takes the place of the registry's commit. This one only looks on. So it
# exits with status 1, and the registry writes the value.
case $REG_SET in
    */allowed) former=$ALLOWED ;;
    *) former=$READ_ONLY ;;
esac
mkdir -p /var/lib/zelvo-example
printf '%s was %s\n' "${REG_SET##*/}" "$former" >>/var/lib/zelvo-example/usb-journal
exit 1
