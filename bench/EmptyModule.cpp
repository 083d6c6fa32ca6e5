// SPDX-License-Identifier: MIT

// A module that needs what the plugin needs and does nothing: the baseline of loading it.

extern "C" int emptyModule();

extern "C" int emptyModule()
{
    return 0;
}
