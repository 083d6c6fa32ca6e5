// SPDX-License-Identifier: MIT

#include "plugin/ZelvoView.h"

#include "actions/ActionKit.h"
#include "actions/default/RequestContext.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "plugin/ActivityReports.h"
#include "plugin/ViewKeyMap.h"
#include "plugin/ViewListing.h"
#include "tree/ConfigKey.h"
#include "tree/ConfigTree.h"

#include <vantora/vantora.h>

#include <QVariant>

using RegistryVocabulary::viewPlaceholder;

namespace {

int const kDone = 0;
int const kNotHandled = 1;
int const kUnknownEntry = 6;

char const kPluginName[] = "zelvo-view";
char const kWrappersFolder[] = "/wrappers";
QChar const kSeparator = QLatin1Char('/');

} // namespace

class ZelvoView::Request : public RequestContext
{
public:
    Request(ZelvoView& view, Operation operation, QString const& key)
        : RequestContext(operation, key)
        , mSetBuffer(view.mSetBuffer)
    {
    }

    ~Request()
    {
        if (isOutermost())
            mSetBuffer.deleteTakenOut();
    }

private:
    SetBuffer& mSetBuffer;
};

ZelvoView::ZelvoView()
    : mApplies(*this)
{
    setName(QLatin1String(kPluginName));
}

void ZelvoView::pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                               QString const& baseDir)
{
    mBackend = &backend;
    mRegistry = &registry;
    mText = text;
    mBaseDir = baseDir;
    // Scripts run in folders of their own, and the host may change its own at any time.
    QString const absolute
        = QDir::isAbsolutePath(baseDir) ? baseDir : QDir::currentPath() + kSeparator + baseDir;
    ActionKit::init(backend, QDir(absolute + QLatin1String(kWrappersFolder)));
    registerViewKeys(*ActionKit::instance(), backend);
    if (QObject* const listener = qvariant_cast<QObject*>(property(kListenerProperty)))
        new ActivityReports(*listener, this);
}

int ZelvoView::contains(QString const& key)
{
    if (!key.startsWith(rootDir()) && !key.startsWith(tmpRootDir()))
        return kNotHandled;
    if (!sessionsAreListed(*mBackend, key, rootDir()))
        return kNotHandled;
    QMap<QString, _RegNodeType> answer;
    if (mBackend->get(key, answer, REG_PARAM_VALUE, emptyText()) != kDone)
        return AbstractPlugin::contains(key);
    return answer.isEmpty() ? kNotHandled : kDone;
}

int ZelvoView::get(QString const& key, QMap<QString, _RegNodeType>& result,
                   _RegEntryParam const& param, QString const& extra)
{
    Request const request(*this, Request::Get, key);
    if (request.isRepeated())
        return kNotHandled;
    ConfigTree tree(rootDir());
    if (!handler(tree, key)) {
        // A listing of the directory above shows the plugin, though the key is not the plugin's.
        if (key + kSeparator + name() == rootDir() && tree.isVisible())
            result.insert(rootDir(), REG_NODE_DIR);
        return kNotHandled;
    }
    IConfigEntry const* const entry = tree.resolveUuids(key);
    if (!entry)
        return kNotHandled;
    if (param != REG_PARAM_VALUE)
        return AbstractPlugin::get(generalisedPath(key), result, param, extra);

    if (ConfigBranch const* const branch = dynamic_cast<ConfigBranch const*>(entry)) {
        listVisibleChildren(*branch, key, result);
        return kDone;
    }
    if (ConfigKey const* const leaf = dynamic_cast<ConfigKey const*>(entry)) {
        QString const value = leaf->value();
        if (value.isNull()) {
            result.insert(leaf->defaultValue(), REG_NODE_DEFAULT);
            return kDone;
        }
        result.insert(value, REG_NODE_VALUE);
        request.valueWasRead(*leaf);
        return kDone;
    }
    return kUnknownEntry;
}

int ZelvoView::set(QString const& key, QString const& value, _RegEntryParam const& param)
{
    Request const request(*this, Request::Set, key);
    if (request.isRepeated() || param != REG_PARAM_VALUE)
        return kNotHandled;
    ConfigTree tree(rootDir());
    IConfigEntry const* const entry = tree.find(key, getDefaultSettings());
    if (!entry)
        return kNotHandled;
    if (!dynamic_cast<ConfigKey const*>(entry))
        return AbstractPlugin::set(key, value, param);

    ConfigKey* const pending = dynamic_cast<ConfigKey*>(mSetBuffer.add(tree, key));
    if (!pending)
        return kNotHandled;
    pending->setValue(value);
    return kDone;
}

int ZelvoView::commit(QString const& key)
{
    Request const request(*this, Request::Commit, key);
    if (request.isRepeated())
        return kNotHandled;
    // The look-up gets a tree of its own: what it finds beside the entry must not be written.
    ConfigTree tree(rootDir());
    if (!handler(tree, key)) {
        if (KeyPath(key).isRootOf(rootDir()))
            mSetBuffer.commitAll(rootDir(), getDefaultSettings());
        return kNotHandled;
    }
    IConfigEntry* const found = tree.resolveUuids(key);
    if (!found)
        return kNotHandled;
    if (found == &tree)
        mSetBuffer.commitAll(rootDir(), getDefaultSettings());
    else
        mSetBuffer.commit(*found, key, rootDir(), getDefaultSettings());
    return kDone;
}

int ZelvoView::apply(QString const& key, QString const& command)
{
    Request const request(*this, Request::Apply, key);
    if (request.isRepeated())
        return kNotHandled;
    ConfigTree tree(rootDir());
    IConfigEntry* const entry = tree.find(key, getDefaultSettings());
    if (!entry)
        return kNotHandled;
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(entry))
        tree.populateEntryWithAllDescendants(*branch, getDefaultSettings(), key);
    mApplies.start(*entry, mBackend, command);
    return kDone;
}

int ZelvoView::create(QString const& key, _RegEntryType const&)
{
    Request const request(*this, Request::Create, key);
    if (request.isRepeated())
        return kNotHandled;
    ConfigTree tree(rootDir());
    AbstractConfigEntry* const session = dynamic_cast<AbstractConfigEntry*>(handler(tree, key));
    QString const uuid = KeyPath(key).basename();
    if (!session || session->name() != viewPlaceholder() || uuid == viewPlaceholder())
        return kNotHandled;
    session->setName(uuid);
    if (tree.entry(key) != session)
        return kNotHandled;

    // The session alone waits for the commit; its keys do when they are set.
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(session))
        branch->deleteChildren();
    bool const waits = mSetBuffer.entry(key);
    IConfigEntry* const pending = mSetBuffer.add(tree, key);
    if (!pending)
        return kNotHandled;
    QVariant nothing;
    bool const isCreated = ActionKit::instance()->createAction(*pending, nothing);
    if (isCreated)
        mSetBuffer.markAsCreated(*pending);
    else if (!waits)
        mSetBuffer.takeOut(*pending);
    return isCreated ? kDone : kNotHandled;
}

int ZelvoView::del(QString const& key)
{
    Request const request(*this, Request::Del, key);
    if (request.isRepeated())
        return kNotHandled;
    ConfigTree tree(rootDir());
    IConfigEntry* const entry = tree.find(key, getDefaultSettings());
    if (!entry)
        return kNotHandled;
    entry->del();
    mSetBuffer.undoCreation(key);
    return kDone;
}

ConfigTree* ZelvoView::setBuffer()
{
    return mSetBuffer.tree(rootDir());
}

IConfigEntry* ZelvoView::handler(ConfigTree& tree, QString const& key) const
{
    return tree.handlesKey(generalisedPath(key), getDefaultSettings());
}
