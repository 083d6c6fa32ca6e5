// SPDX-License-Identifier: MIT

#include "actions/default/RequestContext.h"

#include "actions/ActionKit.h"
#include "actions/IActionDescription.h"
#include "actions/IActivityObserver.h"
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

RequestContext::RequestContext(Operation operation, QString const& key)
    : mOperation(operation)
    , mKey(key)
    , mAround(ActionKit::sRequest())
{
    ActionKit::sSetRequest(this);
}

RequestContext::~RequestContext()
{
    ActionKit::sSetRequest(mAround);
    sForgetFolders();
}

bool RequestContext::isRepeated() const
{
    for (RequestContext const* each = mAround; each; each = each->mAround) {
        if (each->mOperation == mOperation && each->mKey == mKey)
            return true;
    }
    return false;
}

void RequestContext::valueWasRead(IConfigEntry const& entry) const
{
    IActivityObserver* const observer = ActionKit::sObserver();
    if (!observer)
        return;
    IConfigAction const* const action = ActionKit::instance()->registeredValueAction(entry);
    BackEnd const* const backEnd = descriptionOf(action, entry).backEnd;
    char const* const source = mIsAnsweredByScript ? "script" : backEnd ? backEnd->word : "";
    observer->valueWasRead(mKey, QLatin1String(source));
}

bool RequestContext::sAreFoldersMissing(IConfigEntry const& entry)
{
    RequestContext* const request = ActionKit::sRequest();
    IConfigEntry const* const area = request ? areaOf(entry) : nullptr;
    if (!area)
        return false;
    if (area->name() != request->mArea) {
        request->mArea = area->name();
        request->mIsAreaMissing = !QFile::exists(Wrapper::path(*area, ""));
    }
    return request->mIsAreaMissing;
}

void RequestContext::sForgetFolders()
{
    if (RequestContext* const request = ActionKit::sRequest())
        request->mArea = QString();
}

void RequestContext::sScriptHasAnswered()
{
    if (RequestContext* const request = ActionKit::sRequest())
        request->mIsAnsweredByScript = true;
}
