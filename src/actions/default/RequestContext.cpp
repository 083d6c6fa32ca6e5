#include "actions/default/RequestContext.h"

#include "actions/ActionKit.h"

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

bool RequestContext::isOutermost() const
{
    return !mAround;
}

bool RequestContext::sAreFoldersMissing(IConfigEntry const& entry)
{
    RequestContext* const request = ActionKit::sRequest();
    return request && request->mFolders.areMissing(entry);
}

void RequestContext::sForgetFolders()
{
    if (RequestContext* const request = ActionKit::sRequest())
        request->mFolders.forget();
}
