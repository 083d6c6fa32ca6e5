// SPDX-License-Identifier: MIT

#include "support/Scene.h"

#include "plugin/ZelvoView.h"

#include <QDir>
#include <QFile>

namespace {

int const kDone = 0;

QString newDirectory(QString const& parent)
{
    static int count = 0;
    QString const directory = parent + QString::fromLatin1("/bench-%1").arg(++count);
    if (!QDir().mkdir(directory))
        qFatal("%s is there already", qPrintable(directory));
    return directory;
}

Scene& kept(QMap<int, Scene*>& scenes, int sessions, QString const& directory)
{
    Scene*& scene = scenes[sessions];
    if (!scene)
        scene = new Scene(sessions, directory);
    scene->use();
    return *scene;
}

QByteArray document(int sessions)
{
    QByteArray xml = "<registry><dir name=\"root\"><dir name=\"ConnectionType\">"
                     "<dir name=\"rdesktop\"><dir name=\"connections\">";
    for (int i = 0; i < sessions; ++i) {
        xml += "<dir name=\"" + Scene::sUuid(i).toLatin1() + "\"><key name=\"label\" value=\""
            + Scene::sName(i).toLatin1()
            + "\"/><key name=\"address\" value=\"host.example\"/></dir>";
    }
    return xml + "</dir></dir></dir></dir></registry>";
}

} // namespace

Scene::Scene(int sessions, QString const& directory)
    : mBaseDir(newDirectory(QDir::currentPath()))
    , mHost(new RegistryHost)
    , mPlugin(new ZelvoView)
{
    QDir().mkpath(wrappersDir() + QLatin1String("/zelvo-view"));
    QString error;
    QString const file = newDirectory(directory) + QLatin1String("/registry.db");
    if (!mHost->loadDefaults(QLatin1String(ZELVO_DEFAULTS_DIR), error) || !mHost->open(file, error))
        qFatal("%s", qPrintable(error));
    mHost->addPlugin(*mPlugin);
    use();
    addSessions(sessions);
}

Scene::~Scene()
{
}

Scene& Scene::sWith(int sessions)
{
    static QMap<int, Scene*> scenes;
    return kept(scenes, sessions, sMemory());
}

Scene& Scene::sOnDisk(int sessions)
{
    static QMap<int, Scene*> scenes;
    return kept(scenes, sessions, QDir::currentPath());
}

QString Scene::sMemory()
{
    return QLatin1String("/tmp");
}

QString Scene::sUuid(int i)
{
    // The digits that differ stand in front, as in the random UUIDs of real sessions.
    uint const scattered = static_cast<uint>(i + 1) * 2654435761u;
    return QString::fromLatin1("{%1-1f2e-4d3c-8b4a-%2}")
        .arg(scattered, 8, 16, QLatin1Char('0'))
        .arg(i, 12, 16, QLatin1Char('0'));
}

QString Scene::sName(int i)
{
    return QString::fromLatin1("Session %1").arg(i);
}

QString Scene::sViewKey(int i)
{
    return sViewDirectory() + QLatin1Char('/') + sUuid(i);
}

QString Scene::sRegistryKey(int i)
{
    return sRegistryDirectory() + QLatin1Char('/') + sUuid(i) + QLatin1String("/label");
}

QString Scene::sViewDirectory()
{
    return QLatin1String("root/zelvo-view/rdp/sessions");
}

QString Scene::sRegistryDirectory()
{
    return QLatin1String("root/ConnectionType/rdesktop/connections");
}

void Scene::use()
{
    mPlugin->pluginIsLoaded(*mHost, mHost->defaultSettings(), QString(), mBaseDir);
}

void Scene::addDefaults(QString const& directory)
{
    QString error;
    if (!mHost->loadDefaults(directory, error))
        qFatal("%s", qPrintable(error));
}

QString Scene::addScript(QString const& viewKey, QString const& name, QByteArray const& body) const
{
    QString const folder = wrappersDir() + QLatin1Char('/') + viewKey;
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s", qPrintable(file.errorString()));
    file.write("#!/bin/sh\n" + body + "\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
}

QMap<QString, _RegNodeType> Scene::get(QString const& key)
{
    QMap<QString, _RegNodeType> answer;
    need(mHost->get(key, answer, REG_PARAM_VALUE, QString()), "get");
    return answer;
}

QString Scene::wrappersDir() const
{
    return mBaseDir + QLatin1String("/wrappers");
}

RegistryHost& Scene::host()
{
    return *mHost;
}

ZelvoView& Scene::plugin()
{
    return *mPlugin;
}

void Scene::addSessions(int sessions)
{
    if (sessions == 0)
        return;
    QByteArray xml = document(sessions);
    need(mHost->importRegistry(xml), "import");
}

void need(int code, char const* what)
{
    if (code != kDone)
        qFatal("%s: code %d", what, code);
}
