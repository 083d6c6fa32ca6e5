#!/bin/sh
# commit.sh gets the value to store in the file $1. It refuses a value that is no host name: the old
# one stays.
set -e
name=$(cat "$1")
case $name in
    '' | -* | *- | *[!a-z0-9-]*) exit 1 ;;
esac

# A new file that is then renamed: nobody ever reads half a name.
mkdir -p /var/lib/zelvo-example
printf '%s' "$name" >/var/lib/zelvo-example/hostname.new
mv /var/lib/zelvo-example/hostname.new /var/lib/zelvo-example/hostname
