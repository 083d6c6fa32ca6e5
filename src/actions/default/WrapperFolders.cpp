#include "actions/default/WrapperFolders.h"

#include "actions/default/Wrapper.h"
#include "tree/IConfigEntry.h"

#include <QFile>

namespace {

/// The entry directly below the top that `entry` is or lies under; null for the top itself.
IConfigEntry const* areaOf(IConfigEntry const& entry)
{
    IConfigEntry const* area = nullptr;
    for (IConfigEntry const* each = &entry; each->parent(); each = each->parent())
        area = each;
    return area;
}

} // namespace

WrapperFolders::WrapperFolders()
    : mIsMissing(false)
{
}

bool WrapperFolders::areMissing(IConfigEntry const& entry)
{
    IConfigEntry const* const area = areaOf(entry);
    if (!area)
        return false;
    if (area->name() != mArea) {
        mArea = area->name();
        mIsMissing = !QFile::exists(Wrapper::path(*area, ""));
    }
    return mIsMissing;
}

void WrapperFolders::forget()
{
    mArea = QString();
    mIsMissing = false;
}
