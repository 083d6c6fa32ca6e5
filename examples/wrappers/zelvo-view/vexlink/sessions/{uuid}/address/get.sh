#!/bin/sh
# See ../emulation.
printf '%s' "${SETTING?}"
