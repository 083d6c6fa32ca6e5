#!/bin/sh
# commit.sh is given the value to store in the file $1. A value that makes no host name is refused:
# the old one stays.
set -e
name=$(cat "$1")
case $name in
    '' | -* | *- | *[!a-z0-9-]*) exit 1 ;;
esac

# Written aside and renamed, so that nobody ever reads half a name.
mkdir -p /var/lib/zelvo-example
printf '%s' "$name" >/var/lib/zelvo-example/hostname.new
mv /var/lib/zelvo-example/hostname.new /var/lib/zelvo-example/hostname
