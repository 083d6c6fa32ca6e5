// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/configplugin.h>

#include <QtPlugin>

/// Base of all plugins: keeps what the host hands over and answers what a plugin leaves open.
class AbstractPlugin : public ConfigPlugin
{
public:
    AbstractPlugin();
    ~AbstractPlugin() override;

    /// Not supported: 1.
    int set(QString const& key, QString const& value, _RegEntryParam const& param) override;

    /// Answers a non-zero `param`: the type word or the regular expression of a default setting, as
    /// a value. 1 for an ordinary request and for a key that is no value of the default settings.
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override;

    /// 0 for a key that the default settings know, else 1.
    int contains(QString const& key) override;

    /// Not supported: 1.
    int commit(QString const& key) override;
    /// Not supported: 1.
    int apply(QString const& key, QString const& command) override;
    /// Not supported: 1.
    int clone(QString const& source, QString const& target) override;
    /// Not supported: 1.
    int rollback(QString const& key) override;
    /// Not supported: 1.
    int watch(QStringList const& keys, int id) override;

    /// Nothing is ever pending: 0, `changes` untouched.
    int changes(QMap<QString, _RegEntryChange>& changes) override;

    /// Not supported: 1.
    int create(QString const& key, _RegEntryType const& type) override;
    /// Not supported: 1.
    int del(QString const& key) override;
    /// Not supported: 1.
    int importRegistry(QByteArray& data) override;
    /// Not supported: 1.
    int exportRegistry(QString const& key, QByteArray& data) override;

    void pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                        QString const& baseDir) override;

    /// Not supported: 1.
    int trySet(QString const& key, QString const& value) override;

    /// "root/" and the name.
    QString rootDir() const override;

    /// "tmp/" and the name.
    QString tmpRootDir() const override;

    void setName(QString const& name);
    QString name() const;

    /// The default settings that `pluginIsLoaded` was given; null before. They stay the host's.
    Reg::Registry* getDefaultSettings() const;

protected:
    // What pluginIsLoaded keeps; a derived class that does not call the base's fills them itself.
    Vantora* mBackend;
    Reg::Registry* mRegistry;
    QString mText;
    QString mBaseDir;

private:
    Q_DISABLE_COPY(AbstractPlugin)

    QString mName;
};

Q_DECLARE_INTERFACE(AbstractPlugin, "com.orbelt.vantora.ConfigPlugin/1.1")
