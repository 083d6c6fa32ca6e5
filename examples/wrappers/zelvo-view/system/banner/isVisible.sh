#!/bin/sh
# isVisible.sh shows the key by exit status 0 and hides it by any other. A hidden key is in no
# listing and cannot be set. The banner is for machines that were given a name.
test -e /var/lib/zelvo-example/hostname
