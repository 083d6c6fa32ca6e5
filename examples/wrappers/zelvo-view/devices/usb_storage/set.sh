#!/bin/sh
# Runs once for each REG_SET line of set.env, with that registry key in REG_SET. What it prints is
# stored there: every character counts, so there is no newline.
#
# A value cannot be refused here: after a set.sh that fails, the registry gets the value as it came.
# So any word but the three that are known means "off", which does the least harm.
case $(cat "$1") in
    read-write) allowed=yes read_only=no ;;
    read-only) allowed=yes read_only=yes ;;
    *) allowed=no read_only=no ;;
esac
case $REG_SET in
    */allowed) printf '%s' "$allowed" ;;
    */read-only) printf '%s' "$read_only" ;;
esac
