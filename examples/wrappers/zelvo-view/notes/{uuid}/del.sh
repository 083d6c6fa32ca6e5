#!/bin/sh
# Removes the note on top.
sed -i '$d' /var/lib/zelvo-example/notes
