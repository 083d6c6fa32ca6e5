#!/bin/sh
# The five settings of a terminal session that the plugin leaves to scripts are kept in the
# registry, beside the session's label: get.env reads the key, set.env names it for setting and
# committing, and a set.sh or commit.sh is not needed. The registry keys are declared in
# defaults/example.xml.
#
# While the session is not committed there is no SETTING: the script fails, and the default is
# answered.
printf '%s' "${SETTING?}"
