#!/bin/sh
cat /var/lib/zelvo-example/banner 2>/dev/null
