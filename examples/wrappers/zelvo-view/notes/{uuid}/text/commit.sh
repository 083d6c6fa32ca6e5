#!/bin/sh
# Writes the note on top anew; a note has one line. It stays when there is no text, as in a commit
# before which none was set.
set -e
test -s "$1"
text=$(tr '\n' ' ' <"$1")
pile=/var/lib/zelvo-example/notes
test -s "$pile"
{
    sed '$d' "$pile"
    printf '%s\n' "$text"
} >"$pile.new"
mv "$pile.new" "$pile"
