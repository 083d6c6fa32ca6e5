// SPDX-License-Identifier: MIT

// Uses both libraries of the platform: a plugin that asks the backend.
#include <vantora/abstractplugin.h>
#include <vantora/vantora.h>

#include <cstdio>

namespace {

class Consumer : public AbstractPlugin
{
public:
    int contains(QString const& key) override
    {
        QString value;
        return mBackend ? mBackend->get(key, value, REG_PARAM_VALUE, QString()) : 1;
    }
};

} // namespace

int main()
{
    Consumer consumer;
    consumer.setName(QLatin1String("consumer"));
    std::printf("%s %d\n", consumer.rootDir().toLatin1().constData(),
                consumer.contains(consumer.rootDir()));
    return 0;
}
