#!/bin/sh
# del.sh takes the value away; get.sh then fails and the default is back. Its exit code is not
# looked at: a key counts as deleted once the script has run.
rm -f /var/lib/zelvo-example/banner
