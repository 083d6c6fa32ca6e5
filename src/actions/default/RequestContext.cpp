#include "actions/default/RequestContext.h"

#include "actions/ActionKit.h"
#include "actions/IActionDescription.h"
#include "actions/IActivityObserver.h"

RequestContext::RequestContext(Operation operation, QString const& key)
    : mOperation(operation)
    , mKey(key)
    , mAround(ActionKit::sRequest())
    , mIsAnsweredByScript(false)
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
    return request && request->mFolders.areMissing(entry);
}

void RequestContext::sForgetFolders()
{
    if (RequestContext* const request = ActionKit::sRequest())
        request->mFolders.forget();
}

void RequestContext::sScriptHasAnswered()
{
    if (RequestContext* const request = ActionKit::sRequest())
        request->mIsAnsweredByScript = true;
}
