// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QScopedPointer>
#include <QString>
#include <QVariant>

class QFile;

/// One NetworkManager system connection in the keyfile form: groups of `key=value` lines.
///
/// Four groups are known (security, connection, wireless and ipv4); whatever else a file holds is
/// dropped when it is written again. An object lives for one operation: it is made on a path, read
/// or changed, written with sync() where the change is to be kept, and destroyed. No operation
/// reports a failure: a file that cannot be read gives empty groups, one that cannot be written
/// stays as it is.
///
/// The text getters never answer a null string.
class NMConfFile
{
public:
    /// Reads the file at `path`, or takes the default content when there is none. Nothing is
    /// written before sync().
    explicit NMConfFile(QString const& path);

    /// Closes the file. It does not write.
    virtual ~NMConfFile();

    /// The path, as given.
    QString fileName() const;

    bool autoconnect() const;
    void setAutoconnect(bool on);

    /// The SSID, which the file keeps as a list of decimal byte values.
    QString ssid() const;

    /// Takes each character as its Latin-1 code; a character outside Latin-1 becomes byte 0.
    void setSsid(QString const& ssid);

    /// "none", "WEP" or "WPA Personal". A WPA2 connection is "WPA Personal" as well: the file does
    /// not tell the two apart.
    QString security() const;

    /// Rewrites the security group for the type `name`: one of security()'s answers or "WPA2
    /// Personal"; any other name makes it an open network. The passphrase is taken along between
    /// WEP and WPA, and nothing changes when `name` is the type already.
    void setSecurity(QString name);

    /// The WPA passphrase or the WEP key; empty for an open network.
    QString passphrase() const;

    /// Stores `passphrase` under the key that belongs to the current security type. An open
    /// network has none, and there `passphrase` is dropped.
    void setPassphrase(QString const& passphrase);

    /// Whether a line of the file can hold `value`: reading it gives what was written. Not so with
    /// a "=", a newline or a NUL in it, with blanks at an end, or with characters outside Latin-1.
    static bool sReadsBack(QString const& value);

    /// Whether the connection's type is that of a wireless one.
    bool isWirelessConfig() const;

    /// The text that sync() writes: the groups in a fixed order, keys in ascending order, an empty
    /// line before each group whether it has keys or not.
    QString toString() const;

    /// Puts toString() as Latin-1 in place of what the file holds, as replaceFile() does; a file
    /// that could not be read stays as it is. It is then readable and writable by its owner only.
    void sync();

    /// Adds what the file holds to the groups: a key read replaces one of the same name, other keys
    /// stay. The file stays open for reading until sync() or the end of the object.
    void loadConfig();

    /// Sets the keys of a new connection: an open network without SSID.
    void loadDefaultConfig();

private:
    Q_DISABLE_COPY(NMConfFile)

    // In the order in which the groups are written.
    enum Group { SecurityGroup, ConnectionGroup, WirelessGroup, Ipv4Group, GroupCount, NoGroup };

    struct DefaultValue;

    static DefaultValue const smDefaultValues[];

    static Group sGroupOfHeader(QString const& line);

    QString text(Group group, QString const& key) const;
    bool parseLine(QString const& line, Group& current);
    void warn(int number, QString const& line) const;
    void startSecurity(QString const& keyManagement);
    void setWepKey(QString const& key);

    QScopedPointer<QFile> mFile;
    // Whether the groups hold all that the file did.
    bool mIsRead = true;
    QMap<QString, QVariant> mGroups[GroupCount];
};
