#!/bin/sh
# Writes down what the commit of a terminal session hands to its script. A real one would pass it on
# to the terminal program.
#
# VEXLINK_ACTION is CREATE, EDIT or DELETE, by what is pending in the registry for the session
# itself. A setting that was not set since the last commit is empty here; VEXLINK_TTSNAME is what
# the registry holds.
#
# Each variable becomes one line, even when a value holds newlines, and an empty line follows.
mkdir -p /var/lib/zelvo-example
{
    env -0 | grep -z '^VEXLINK_' | sort -z | tr '\n\0' ' \n'
    echo
} >>/var/lib/zelvo-example/vexlink-commits

# A commit.sh that succeeds takes the place of the registry's commit: the session would stay
# pending, and a deleted one would stay. So this one fails on purpose.
exit 1
