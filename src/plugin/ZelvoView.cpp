#include "plugin/ZelvoView.h"

#include "actions/ActionKit.h"
#include "actions/default/DefaultApplyAction.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "plugin/AutoThread.h"
#include "plugin/ViewKeyMap.h"
#include "tree/ConfigKey.h"
#include "tree/ConfigTree.h"

#include <vantora/vantora.h>

#include <QThreadPool>
#include <QVariant>

using RegistryVocabulary::viewPlaceholder;

namespace {

int const kDone = 0;
int const kNotHandled = 1;
int const kUnknownEntry = 6;

char const kPluginName[] = "zelvo-view";
char const kWrappersFolder[] = "/wrappers";
QChar const kSeparator = QLatin1Char('/');

void listVisibleChildren(ConfigBranch const& branch, QString const& key,
                         QMap<QString, _RegNodeType>& result)
{
    for (IConfigEntry const* const child : branch.children()) {
        if (!child->isVisible())
            continue;
        bool const isBranch = dynamic_cast<ConfigBranch const*>(child);
        result.insert(key + kSeparator + child->name(), isBranch ? REG_NODE_DIR : REG_NODE_KEY);
    }
}

void readValue(ConfigKey const& key, QMap<QString, _RegNodeType>& result)
{
    QString const value = key.value();
    if (value.isNull())
        result.insert(key.defaultValue(), REG_NODE_DEFAULT);
    else
        result.insert(value, REG_NODE_VALUE);
}

void deleteChildren(IConfigEntry& entry)
{
    ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(&entry);
    if (!branch)
        return;
    QList<IConfigEntry*> const children = branch->children();
    for (IConfigEntry* const child : children) {
        branch->detachChild(*child);
        delete child;
    }
}

void deleteFromParent(IConfigEntry& entry)
{
    if (ConfigBranch* const parent = dynamic_cast<ConfigBranch*>(entry.parent()))
        parent->detachChild(entry);
    delete &entry;
}

} // namespace

ZelvoView::ZelvoView()
    : mSetBuffer(nullptr)
{
    setName(QLatin1String(kPluginName));
}

ZelvoView::~ZelvoView()
{
    // Before the pools, which are children too: the kept threads wait for them.
    QList<AutoThread*> const keepers = findChildren<AutoThread*>();
    qDeleteAll(keepers);
    deleteSetBuffer();
}

void ZelvoView::pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                               QString const& baseDir)
{
    mBackend = &backend;
    mRegistry = &registry;
    mText = text;
    mBaseDir = baseDir;
    ActionKit::init(backend, QDir(baseDir + QLatin1String(kWrappersFolder)));
    registerViewKeys(*ActionKit::instance(), backend);
}

int ZelvoView::contains(QString const& key)
{
    if (!key.startsWith(rootDir()) && !key.startsWith(tmpRootDir()))
        return kNotHandled;
    if (!sessionsExist(key))
        return kNotHandled;
    QMap<QString, _RegNodeType> answer;
    if (mBackend->get(key, answer, REG_PARAM_VALUE, emptyText()) != kDone)
        return AbstractPlugin::contains(key);
    return answer.isEmpty() ? kNotHandled : kDone;
}

int ZelvoView::get(QString const& key, QMap<QString, _RegNodeType>& result,
                   _RegEntryParam const& param, QString const& extra)
{
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
        return AbstractPlugin::get(ActionKit::translateUuid(key, viewPlaceholder()), result, param,
                                   extra);

    if (ConfigBranch const* const branch = dynamic_cast<ConfigBranch const*>(entry)) {
        listVisibleChildren(*branch, key, result);
        return kDone;
    }
    if (ConfigKey const* const leaf = dynamic_cast<ConfigKey const*>(entry)) {
        readValue(*leaf, result);
        return kDone;
    }
    return kUnknownEntry;
}

int ZelvoView::set(QString const& key, QString const& value, _RegEntryParam const& param)
{
    if (param != REG_PARAM_VALUE)
        return kNotHandled;
    ConfigTree tree(rootDir());
    IConfigEntry const* const entry = handler(tree, key) ? tree.resolveUuids(key) : nullptr;
    if (!entry)
        return kNotHandled;
    if (!dynamic_cast<ConfigKey const*>(entry))
        return AbstractPlugin::set(key, value, param);

    ConfigKey* const pending = dynamic_cast<ConfigKey*>(addToSetBuffer(tree, key));
    if (!pending)
        return kNotHandled;
    pending->setValue(value);
    return kDone;
}

int ZelvoView::commit(QString const& key)
{
    // The look-up gets a tree of its own: what it finds beside the entry must not be written.
    ConfigTree tree(rootDir());
    if (!handler(tree, key)) {
        if (KeyPath(key).isRootOf(rootDir()))
            commitSetBuffer();
        return kNotHandled;
    }
    IConfigEntry* const found = tree.resolveUuids(key);
    if (!found)
        return kNotHandled;
    if (found == &tree) {
        commitSetBuffer();
        return kDone;
    }

    if (IConfigEntry* const pending = setBuffer()->entry(key)) {
        commitEntry(*pending, key);
        deleteFromParent(*pending);
    } else {
        deleteChildren(*found);
        found->commit();
    }
    return kDone;
}

int ZelvoView::apply(QString const& key, QString const& command)
{
    ConfigTree tree(rootDir());
    IConfigEntry* const entry = handler(tree, key) ? tree.resolveUuids(key) : nullptr;
    if (!entry)
        return kNotHandled;
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(entry))
        tree.populateEntryWithAllDescendants(*branch, getDefaultSettings(), key);

    ActionKit::instance()->pushApplyThreadPool(new QThreadPool(this));
    entry->apply();
    DefaultApplyAction::sExecuteLastApplyCommand(mBackend, command);
    return kDone;
}

int ZelvoView::create(QString const& key, _RegEntryType const&)
{
    ConfigTree tree(rootDir());
    AbstractConfigEntry* const session = dynamic_cast<AbstractConfigEntry*>(handler(tree, key));
    QString const uuid = KeyPath(key).basename();
    if (!session || session->name() != viewPlaceholder() || uuid.isEmpty())
        return kNotHandled;

    // The session alone waits for the commit; its keys do when they are set.
    deleteChildren(*session);
    session->setName(uuid);
    IConfigEntry const* const pending = addToSetBuffer(tree, key);
    QVariant nothing;
    bool const created = pending && ActionKit::instance()->createAction(*pending, nothing);
    return created ? kDone : kNotHandled;
}

int ZelvoView::del(QString const& key)
{
    ConfigTree tree(rootDir());
    IConfigEntry* const entry = handler(tree, key) ? tree.resolveUuids(key) : nullptr;
    if (!entry)
        return kNotHandled;
    entry->del();
    return kDone;
}

int ZelvoView::importRegistry(QByteArray&)
{
    return kDone;
}

int ZelvoView::exportRegistry(QString const&, QByteArray&)
{
    return kDone;
}

ConfigTree* ZelvoView::setBuffer()
{
    if (!mSetBuffer)
        mSetBuffer = new ConfigTree(rootDir());
    return mSetBuffer;
}

void ZelvoView::deleteSetBuffer()
{
    delete mSetBuffer;
    mSetBuffer = nullptr;
}

IConfigEntry* ZelvoView::handler(ConfigTree& tree, QString const& key) const
{
    return tree.handlesKey(ActionKit::translateUuid(key, viewPlaceholder()), getDefaultSettings());
}

IConfigEntry* ZelvoView::addToSetBuffer(ConfigTree const& found, QString const& key)
{
    ConfigTree::completeTree(found, *setBuffer());
    return setBuffer()->entry(key);
}

void ZelvoView::commitEntry(IConfigEntry& entry, QString const& key)
{
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(&entry))
        setBuffer()->sortLikeDefaultSettings(*branch, getDefaultSettings(), key);
    entry.commit();
}

void ZelvoView::commitSetBuffer()
{
    commitEntry(*setBuffer(), rootDir());
    deleteSetBuffer();
}

bool ZelvoView::sessionsExist(QString const& key) const
{
    int const rootSize = rootDir().size();
    int end = key.size();
    while (end > 0 && end != rootSize) {
        int const separator = key.lastIndexOf(kSeparator, end - 1);
        bool const isSession = isUuidComponent(key.mid(separator + 1, end - separator - 1));
        if (isSession && !isListed(key.left(end)))
            return false;
        end = separator;
    }
    return true;
}

bool ZelvoView::isListed(QString const& key) const
{
    QMap<QString, _RegNodeType> siblings;
    // A directory that cannot be listed lists nothing.
    static_cast<void>(
        mBackend->get(KeyPath(key).dirname().toString(), siblings, REG_PARAM_VALUE, emptyText()));
    return siblings.contains(key);
}
