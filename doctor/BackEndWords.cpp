// SPDX-License-Identifier: MIT

#include "doctor/BackEndWords.h"

#include "actions/IActionDescription.h"

char const* backEndWord(BackEnd const* backEnd)
{
    return backEnd ? backEnd->word : "none";
}

char const* keylessBackEndWords(BackEnd const* backEnd)
{
    if (!backEnd)
        return "scripts";
    return backEnd->title ? backEnd->title : backEnd->word;
}
