// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActionDescription.h"
#include "display/ConfigActions.h"

#include <QString>
#include <QVector>

// The actions of the display keys. Each reads, sets or commits the registry keys behind its view
// key, as the current action says, and answers false to any other one. What was set stays set when
// a later key of the same request fails.

/// What the five have in common: the keys lie in one directory, here that of the configuration.
class DisplayModeActions : public ConfigActions, public DescribedAction
{
public:
    bool execute(IConfigEntry const& entry, QVariant& value) override;

    /// The registry keys have "{UUID}" in place of the profile in use.
    ActionDescription describe(IConfigEntry const& entry) const override;

    /// None while no profile is in use.
    QStringList keysToCommit(IConfigEntry const& entry) override;

protected:
    /// @param directoryTemplate  where the keys lie, for those who ask.
    DisplayModeActions(Vantora& backend, QString const& directoryTemplate);

private:
    /// The directory to read and to commit; null when there is none.
    virtual QString directory();

    /// The directory to set the keys of; null when there is none.
    virtual QString directoryForSetting();

    /// The registry keys, in the order in which they are set and committed.
    virtual QStringList keysIn(QString const& directory) const = 0;

    /// Reads the keys as the view's value; where that fails, `value` is as it was.
    virtual bool readView(QStringList const& keys, QVariant& value) = 0;

    /// Sets the keys to what the view's value stands for.
    virtual bool writeView(QStringList const& keys, QVariant& value) = 0;

    QString mDirectoryTemplate;
};

/// The same for keys of the display profile in use, which is made when it is to be set.
class ProfileModeActions : public DisplayModeActions
{
public:
    explicit ProfileModeActions(Vantora& backend);

protected:
    /// Sets the one key of `keys`, and on success `value`, to `text`.
    bool writeAndKeep(QStringList const& keys, QString const& text, QVariant& value);

private:
    QString directory() override;
    QString directoryForSetting() override;
};

/// "color_depth": a number followed by " Bpp". Setting anything else means 8.
class ColorDepthActions : public ProfileModeActions
{
public:
    explicit ColorDepthActions(Vantora& backend);

private:
    QStringList keysIn(QString const& directory) const override;
    bool readView(QStringList const& keys, QVariant& value) override;
    bool writeView(QStringList const& keys, QVariant& value) override;
};

/// "multi_monitor_mode": one of the mode names, or "Disable". Setting anything else means the first
/// mode; so does an index in the registry that no name has.
class MultiMonitorModeActions : public DisplayModeActions
{
public:
    /// @param modeNames  in the order of the registry's numbers, from 0.
    MultiMonitorModeActions(Vantora& backend, QVector<QString> const& modeNames);

private:
    QStringList keysIn(QString const& directory) const override;
    bool readView(QStringList const& keys, QVariant& value) override;
    bool writeView(QStringList const& keys, QVariant& value) override;

    /// The label of the profile that monitors in use besides the primary one get. False when it
    /// cannot be told.
    bool readSecondaryProfile(QString& profile);

    QVector<QString> mModeNames;
};

/// "refresh_rate": a number or "Auto". Only the rates that the display's preferences offer can be
/// set, or without them those that any display has.
class RefreshRateActions : public ProfileModeActions
{
public:
    explicit RefreshRateActions(Vantora& backend);

private:
    QStringList keysIn(QString const& directory) const override;
    bool readView(QStringList const& keys, QVariant& value) override;
    bool writeView(QStringList const& keys, QVariant& value) override;
};

/// "resolution": width, "x" and height, or "Auto". Setting a text that does not begin so means
/// "Auto"; what follows the height is passed over.
class ResolutionActions : public ProfileModeActions
{
public:
    explicit ResolutionActions(Vantora& backend);

private:
    QStringList keysIn(QString const& directory) const override;
    bool readView(QStringList const& keys, QVariant& value) override;
    bool writeView(QStringList const& keys, QVariant& value) override;
};

/// "primary_monitor": the number of a monitor, from 1. Setting a smaller one, or no number,
/// means 1.
class PrimaryMonitorActions : public DisplayModeActions
{
public:
    explicit PrimaryMonitorActions(Vantora& backend);

private:
    QStringList keysIn(QString const& directory) const override;
    bool readView(QStringList const& keys, QVariant& value) override;
    bool writeView(QStringList const& keys, QVariant& value) override;

    // As the mode names are for the modes. Monitors have none so far: the view shows numbers.
    QVector<QString> mMonitorNames;
};
