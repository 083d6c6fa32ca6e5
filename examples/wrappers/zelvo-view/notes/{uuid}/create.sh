#!/bin/sh
# create.sh runs when somebody creates a key with a UUID in the place of this directory's name. With
# an exit status other than 0 it refuses.
#
# One set of scripts serves all UUIDs, and a script does not know which: what it keeps is common to
# all of them. So this is a pile of notes, one a line. The scripts read and write the note on top.
set -e
mkdir -p /var/lib/zelvo-example
echo >>/var/lib/zelvo-example/notes
