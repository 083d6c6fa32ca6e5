// SPDX-License-Identifier: MIT

#include "common/ProgramTexts.h"

ProgramTexts::ProgramTexts()
    : mPointers(1, nullptr)
{
}

void ProgramTexts::append(QByteArray const& text)
{
    mTexts.append(text);
    mPointers.back() = mTexts.last().data();
    mPointers.push_back(nullptr);
}
