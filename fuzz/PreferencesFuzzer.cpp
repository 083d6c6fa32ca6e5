// SPDX-License-Identifier: MIT

// The input is the preferences file of the display. The rates that it offers can be set and are
// read as they were; without any it is those of every display; others are refused.

#include "Fuzzing.h"
#include "ShippedRegistry.h"
#include "display/DisplayModeActions.h"
#include "tree/ConfigKey.h"

#include <QFile>
#include <QSet>
#include <QVariant>

namespace {

char const kFile[] = "/etc/wlox-display-prefs/prefs.conf";
char const kRefresh[] = "Refresh=";

/// A plain second reading of the file.
QSet<QString> offeredRates(QByteArray const& content)
{
    QSet<QString> rates;
    QList<QByteArray> const lines = content.split('\n');
    for (QByteArray const& line : lines) {
        if (!line.startsWith(kRefresh))
            continue;
        QByteArray const rate = line.mid(qstrlen(kRefresh)).split(',').first();
        rates.insert(QString::fromLatin1(rate.constData(), rate.size()).trimmed());
    }
    return rates;
}

QSet<QString> usualRates()
{
    QSet<QString> rates;
    rates << QLatin1String("0") << QLatin1String("75") << QLatin1String("72")
          << QLatin1String("60");
    return rates;
}

RegistryHost& host()
{
    static ShippedRegistry host;
    return host;
}

class Rates
{
public:
    Rates()
        : mEntry(QLatin1String("refresh_rate"), QString(), nullptr)
        , mActions(host())
    {
    }

    bool set(QString const& rate)
    {
        QVariant value = rate;
        mActions.setCurrentAction(ISettingClass::ACTION_SET_VALUE);
        return mActions.execute(mEntry, value);
    }

    QString committed()
    {
        QVariant value;
        mActions.setCurrentAction(ISettingClass::ACTION_COMMIT);
        fuzzCheck(mActions.execute(mEntry, value), "a rate that was set can be committed");
        mActions.setCurrentAction(ISettingClass::ACTION_VALUE);
        fuzzCheck(mActions.execute(mEntry, value), "a rate that was committed can be read");
        return value.toString();
    }

private:
    ConfigKey mEntry;
    RefreshRateActions mActions;
};

bool isDecimal(QString const& text)
{
    bool isNumber = false;
    static_cast<void>(text.toUInt(&isNumber));
    return isNumber;
}

void checkOffered(Rates& rates, QSet<QString> const& offered)
{
    for (QString const& rate : offered) {
        // The registry keeps numbers; "Auto" is set as "0".
        if (!isDecimal(rate))
            continue;
        fuzzCheck(rates.set(rate), "a rate that is offered can be set");
        QString const shown = rate == QLatin1String("0") ? QLatin1String("Auto") : rate;
        fuzzCheck(rates.committed() == shown, "a rate is read as it was set");
    }
}

void checkRefused(Rates& rates, QSet<QString> const& offered)
{
    QSet<QString> others = usualRates();
    others << QLatin1String("61") << QLatin1String("") << QLatin1String("60 ");
    for (QString const& rate : offered)
        others << rate + QLatin1Char('0') << rate + QLatin1Char(',');
    for (QString const& rate : static_cast<QSet<QString> const&>(others))
        fuzzCheck(offered.contains(rate) || !rates.set(rate), "a rate not offered is refused");
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QByteArray const content = fuzzBytes(data, size);
    fuzzWriteFile(QLatin1String(kFile), content);
    QSet<QString> offered = offeredRates(content);
    if (offered.isEmpty())
        offered = usualRates();

    Rates rates;
    checkOffered(rates, offered);
    checkRefused(rates, offered);
    return 0;
}
