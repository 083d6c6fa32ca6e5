// SPDX-License-Identifier: MIT

#pragma once

struct BackEnd;

/// One word, for programs; "none" for a null back end.
char const* backEndWord(BackEnd const* backEnd);

/// What a key stands for whose back end has no registry keys.
char const* keylessBackEndWords(BackEnd const* backEnd);
