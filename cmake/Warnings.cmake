# SPDX-License-Identifier: MIT
add_library(zelvo-warnings INTERFACE)
target_compile_options(zelvo-warnings INTERFACE -Wall -Wextra -Wpedantic)
