#!/bin/sh
# create.sh runs when a key with a UUID in the place of this directory's name is created; by a
# non-zero exit code it refuses.
#
# One set of scripts serves all UUIDs, and a script is not told which: what it keeps is common to
# all of them. So this is a pile of notes, one a line, and the note on top is the one that is read
# and written.
set -e
mkdir -p /var/lib/zelvo-example
echo >>/var/lib/zelvo-example/notes
