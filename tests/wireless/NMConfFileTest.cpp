// SPDX-License-Identifier: MIT

#include "wireless/NMConfFile.h"

#include "support/DiskSyncs.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"
#include "support/WithoutPrivilege.h"
#include "wireless/WarningRecorder.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QtTest>

#include <csignal>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

char const kFileName[] = "connection";

char const kDefaultText[] = "\n"
                            "\n"
                            "[connection]\n"
                            "autoconnect=true\n"
                            "id=Zelvo\n"
                            "timestamp=0\n"
                            "type=802-11-wireless\n"
                            "uuid=a3021b5f-f1b6-4398-a548-b967630b62be\n"
                            "\n"
                            "[802-11-wireless]\n"
                            "channel=0\n"
                            "mode=infrastructure\n"
                            "mtu=0\n"
                            "rate=0\n"
                            "seen-bssids=00:1e:2a:03:c7:de;\n"
                            "ssid=\n"
                            "tx-power=0\n"
                            "\n"
                            "[ipv4]\n"
                            "ignore-auto-dns=false\n"
                            "ignore-auto-routes=false\n"
                            "method=auto\n"
                            "never-default=false\n";

char const kWepText[] = "\n"
                        "[802-11-wireless-security]\n"
                        "auth-alg=shared\n"
                        "key-mgmt=none\n"
                        "wep-key-type=1\n"
                        "wep-key0=abcde\n"
                        "wep-tx-keyidx=0\n"
                        "\n"
                        "\n"
                        "[802-11-wireless]\n"
                        "security=802-11-wireless-security\n"
                        "\n";

char const kWpaText[] = "\n"
                        "[802-11-wireless-security]\n"
                        "key-mgmt=wpa-psk\n"
                        "psk=abcde\n"
                        "wep-key-type=0\n"
                        "wep-tx-keyidx=0\n"
                        "\n"
                        "\n"
                        "[802-11-wireless]\n"
                        "security=802-11-wireless-security\n"
                        "\n";

// What is written of a file without any key.
char const kNoKeys[] = "\n\n\n\n";

template <int Size> QByteArray withNul(char const (&text)[Size])
{
    return QByteArray(text, Size - 1);
}

QString latin1(QByteArray const& bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

/// One change, written as "what:value".
void edit(NMConfFile& file, QString const& change)
{
    QString const what = change.section(':', 0, 0);
    QString const value = change.section(':', 1);
    if (what == "ssid") {
        file.setSsid(value);
    } else if (what == "security") {
        file.setSecurity(value);
    } else if (what == "passphrase") {
        file.setPassphrase(value);
    } else if (what == "autoconnect") {
        file.setAutoconnect(value == "true");
    } else {
        qFatal("no such change: %s", qPrintable(change));
    }
}

int modeOf(QString const& path)
{
    struct stat status;
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : -1;
}

/// A file that is a mount of its own: another one cannot take its place. It may be written.
bool mountOnItself(QByteArray const& path)
{
    return mount(path.constData(), path.constData(), nullptr, MS_BIND, nullptr) == 0;
}

/// Goes to a place where this process may mount, as the same user. What it mounts is seen by this
/// process alone.
bool mayMount()
{
    if (geteuid() == 0)
        return unshare(CLONE_NEWNS) == 0;
    QByteArray const user = QByteArray::number(static_cast<qulonglong>(geteuid()));
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return false;
    QFile map("/proc/self/uid_map");
    return map.open(QIODevice::WriteOnly) && map.write(user + ' ' + user + " 1") > 0;
}

/// Whether another process could put the SSID "Home" into the connection at `path`, a mount of its
/// own there.
bool ssidIsSetInAMount(QString const& path)
{
    pid_t const child = fork();
    if (child == 0) {
        if (!mayMount() || !mountOnItself(QFile::encodeName(path)))
            _exit(2);
        NMConfFile file(path);
        file.setSsid("Home");
        file.sync();
        _exit(NMConfFile(path).ssid() == "Home" ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Writes the connection at `path` in a process that is killed at the first byte it writes.
int syncKilledAtFirstByte(QString const& path)
{
    pid_t const child = fork();
    if (child == 0) {
        rlimit const none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
        setrlimit(RLIMIT_FSIZE, &none);
        signal(SIGXFSZ, SIG_DFL);
        NMConfFile(path).sync();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

} // namespace

class NMConfFileTest : public QObject
{
    Q_OBJECT

private slots:
    void reading_data();
    void reading();
    void warning_data();
    void warning();
    void editing_data();
    void editing();
    void ssid_data();
    void ssid();
    void security_data();
    void security();
    void autoconnect_data();
    void autoconnect();
    void isWirelessConfig_data();
    void isWirelessConfig();

    void missingFileHasTheDefaultContent();
    void nothingIsWrittenBeforeSync();
    void newFileIsForItsOwnerOnly();
    void fileThatOthersCouldReadIsForItsOwnerOnly();
    void fileStaysAsItWasWhenItsWritingIsCutOff();
    void fileThatMayNotBeReadIsNotWritten();
    void fileThatALinkLeadsToIsWritten();
    void fileInADirectoryThatMayNotBeWrittenToIsRewritten();
    void fileThatIsAMountOfItsOwnIsRewritten();
    void fileThatMayBeNeitherReplacedNorWrittenStays();
    void newFileInADirectoryThatMayNotBeWrittenToIsNotMade();
    void syncedFileIsOnTheDisk();
    void syncReplacesALongerFile();
    void textThatIsMissingIsEmptyAndNotNull();
    void loadingAgainReplacesWhatTheFileHoldsAndKeepsTheRest();
    void loadingAgainAfterSyncReadsWhatWasWritten();
    void pathOfADirectoryIsReadAsNothingAndNotWritten();
    void pathOfAPipeIsReadAsNothingAndNotWritten();
    void pathInAMissingDirectoryIsNotWritten();
    void fileThatClaimsMoreThanItHoldsIsReadToItsEnd();
    void whatWasWrittenReadsBackTheSame();
};

void NMConfFileTest::reading_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("canonical form: keys sorted, groups in order, comments and other groups gone")
        << QByteArray("# made by hand\n"
                      "[ipv4]\n"
                      "method=auto\n"
                      "[802-11-wireless]\n"
                      "ssid=78;101;116;49;\n"
                      "mode=infrastructure\n"
                      "[ipv6]\n"
                      "method=ignore\n"
                      "[connection]\n"
                      "type=802-11-wireless\n"
                      "id=Net1\n"
                      "[802-11-wireless-security]\n"
                      "psk=secret12\n"
                      "key-mgmt=wpa-psk\n")
        << QByteArray("\n"
                      "[802-11-wireless-security]\n"
                      "key-mgmt=wpa-psk\n"
                      "psk=secret12\n"
                      "\n"
                      "[connection]\n"
                      "id=Net1\n"
                      "type=802-11-wireless\n"
                      "\n"
                      "[802-11-wireless]\n"
                      "mode=infrastructure\n"
                      "ssid=78;101;116;49;\n"
                      "\n"
                      "[ipv4]\n"
                      "method=auto\n");
    QTest::newRow("canonical form stays as it is")
        << QByteArray(kDefaultText) << QByteArray(kDefaultText);
    QTest::newRow("empty file: the four empty lines") << QByteArray() << QByteArray(kNoKeys);

    QTest::newRow("a=b=c: the text behind the last = is the value")
        << QByteArray("[connection]\na=b=c\n") << QByteArray("\n\n[connection]\na=c\n\n\n");
    QTest::newRow("psk=ab=cd keeps cd")
        << QByteArray("[802-11-wireless-security]\npsk=ab=cd\n")
        << QByteArray("\n[802-11-wireless-security]\npsk=cd\n\n\n\n");
    QTest::newRow("a=b=: the value is empty")
        << QByteArray("[connection]\na=b=\n") << QByteArray("\n\n[connection]\na=\n\n\n");
    QTest::newRow("key without a value")
        << QByteArray("[connection]\nkey=\n") << QByteArray("\n\n[connection]\nkey=\n\n\n");
    QTest::newRow("value without a key")
        << QByteArray("[connection]\n=value\n") << QByteArray("\n\n[connection]\n=value\n\n\n");
    QTest::newRow("blanks around the line go") << QByteArray("[connection]\n  key=value  \n")
                                               << QByteArray("\n\n[connection]\nkey=value\n\n\n");
    QTest::newRow("blanks around the = stay") << QByteArray("[connection]\nkey = value\n")
                                              << QByteArray("\n\n[connection]\nkey = value\n\n\n");
    QTest::newRow("key that occurs twice: the last value")
        << QByteArray("[connection]\nkey=1\nkey=2\n")
        << QByteArray("\n\n[connection]\nkey=2\n\n\n");
    QTest::newRow("group that occurs twice is one")
        << QByteArray("[ipv4]\na=1\n[connection]\nb=2\n[ipv4]\nc=3\n")
        << QByteArray("\n\n[connection]\nb=2\n\n\n[ipv4]\na=1\nc=3\n");
    QTest::newRow("keys in the order of their character codes")
        << QByteArray("[connection]\nb=\na=\nB=\na-=\na1=\n")
        << QByteArray("\n\n[connection]\nB=\na=\na-=\na1=\nb=\n\n\n");

    QTest::newRow("key before any header is dropped")
        << QByteArray("key=value\n[connection]\na=b\n")
        << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("unknown header ends the group")
        << QByteArray("[connection]\na=b\n[other]\nc=d\n")
        << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("header in other letter case is unknown")
        << QByteArray("[Connection]\na=b\n") << QByteArray(kNoKeys);
    QTest::newRow("header with blanks around it")
        << QByteArray(" [connection]\t\na=b\n") << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("header with text behind it is unknown")
        << QByteArray("[connection] # mine\na=b\n") << QByteArray(kNoKeys);
    QTest::newRow("header with a = in it is a header")
        << QByteArray("[connection]\n[a=b]\nc=d\n") << QByteArray(kNoKeys);

    QTest::newRow("line without = in a group is ignored")
        << QByteArray("[connection]\nnonsense\na=b\n") << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("# does not make a comment")
        << QByteArray("[connection]\n#a=b\n") << QByteArray("\n\n[connection]\n#a=b\n\n\n");
    QTest::newRow("last line without a newline")
        << QByteArray("[connection]\na=b") << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("lines that end in CR LF")
        << QByteArray("[connection]\r\na=b\r\n") << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("text up to the first NUL")
        << withNul("[connection]\0junk\na=b\0c=d\n") << QByteArray("\n\n[connection]\na=b\n\n\n");
    QTest::newRow("blank before a NUL stays")
        << withNul("[connection]\na=b \0\n") << QByteArray("\n\n[connection]\na=b \n\n\n");
    QTest::newRow("line that begins with a NUL is empty")
        << withNul("[connection]\n\0a=b\n") << QByteArray(kNoKeys);
    QTest::newRow("Latin-1 stays byte for byte")
        << QByteArray("[connection]\nid=caf\xe9 \xff\n")
        << QByteArray("\n\n[connection]\nid=caf\xe9 \xff\n\n\n");
    QTest::newRow("UTF-8 stays byte for byte")
        << QByteArray("[connection]\nid=\xe2\x82\xac\n")
        << QByteArray("\n\n[connection]\nid=\xe2\x82\xac\n\n\n");
    QTest::newRow("value of a megabyte")
        << "[connection]\nid=" + QByteArray(1 << 20, 'x') + "\n"
        << "\n\n[connection]\nid=" + QByteArray(1 << 20, 'x') + "\n\n\n";
}

void NMConfFileTest::reading()
{
    QFETCH(QByteArray, read);
    QFETCH(QByteArray, written);
    TestDirectory const directory;
    WarningRecorder const recorder;

    NMConfFile file(directory.write(kFileName, read));

    QCOMPARE(file.toString(), latin1(written));
    file.sync();
    QCOMPARE(directory.read(kFileName), written);
}

void NMConfFileTest::warning_data()
{
    QTest::addColumn<QByteArray>("read");
    // FILE stands for the path.
    QTest::addColumn<QStringList>("warnings");

    QTest::newRow("key before any header") << QByteArray("key=value\n[connection]\na=b\n")
                                           << QStringList("unparsed line 1 of FILE: \"key\"");
    QTest::newRow("lines under an unknown header, one warning a line")
        << QByteArray("\n[other]\npsk=secret12\n\nsecret12\n")
        << (QStringList() << "unparsed line 3 of FILE: \"psk\""
                          << "unparsed line 5 of FILE");
    QTest::newRow("nothing behind the first =")
        << QByteArray("psk=secret=12\n") << QStringList("unparsed line 1 of FILE: \"psk\"");
    QTest::newRow("= at the start")
        << QByteArray("=secret12\n") << QStringList("unparsed line 1 of FILE: \"\"");
    QTest::newRow("what stands before the = is given as it stands, trimmed at the start")
        << QByteArray("  say \"a\\b\" 100%s%1%2 =x\n")
        << QStringList("unparsed line 1 of FILE: \"say \"a\\b\" 100%s%1%2 \"");
    QTest::newRow("comment before any header")
        << QByteArray("# comment\n") << QStringList("unparsed line 1 of FILE");
    QTest::newRow("key in Latin-1")
        << QByteArray("caf\xe9=x\n")
        << QStringList(QString::fromUtf8("unparsed line 1 of FILE: \"caf\xc3\xa9\""));
    QTest::newRow("empty lines without a word") << QByteArray("\n \n\t\r\n") << QStringList();
    QTest::newRow("unknown header without a word") << QByteArray("[other]\n") << QStringList();
    QTest::newRow("line without = in a group without a word")
        << QByteArray("[connection]\nnonsense\n# comment\n") << QStringList();
}

void NMConfFileTest::warning()
{
    QFETCH(QByteArray, read);
    QFETCH(QStringList, warnings);
    TestDirectory const directory;
    QString const path = directory.write(kFileName, read);
    warnings.replaceInStrings("FILE", path);

    WarningRecorder const recorder;
    NMConfFile const file(path);

    QCOMPARE(recorder.warnings(), warnings);
}

void NMConfFileTest::editing_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QByteArray>("written");

    QByteArray const openText("\n\n\n[802-11-wireless]\nmtu=0\n\n");
    QString const longKey(26, 'a');
    QString const passphrase(27, 'a');

    QTest::newRow("SSID") << openText << QStringList("ssid:Net1")
                          << QByteArray("\n\n\n[802-11-wireless]\nmtu=0\n"
                                        "ssid=78;101;116;49;\n\n");
    QTest::newRow("empty SSID") << openText << QStringList("ssid:")
                                << QByteArray("\n\n\n[802-11-wireless]\nmtu=0\nssid=\n\n");
    QTest::newRow("SSID in Latin-1") << openText << QStringList(QString::fromUtf8("ssid:\xc3\xbf"))
                                     << QByteArray("\n\n\n[802-11-wireless]\nmtu=0\nssid=255;\n\n");
    QTest::newRow("SSID with a character outside Latin-1")
        << openText << QStringList(QString::fromUtf8("ssid:a\xe2\x82\xac"))
        << QByteArray("\n\n\n[802-11-wireless]\nmtu=0\nssid=97;0;\n\n");
    QTest::newRow("SSID with a newline forges no line")
        << openText << QStringList("ssid:a\n[ipv4]")
        << QByteArray("\n\n\n[802-11-wireless]\nmtu=0\nssid=97;10;91;105;112;118;52;93;\n\n");

    QTest::newRow("open to WEP: an empty key")
        << openText << QStringList("security:WEP")
        << QByteArray("\n[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=1\nwep-key0=\nwep-tx-keyidx=0\n"
                      "\n\n[802-11-wireless]\nmtu=0\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("open to WPA: an empty passphrase")
        << openText << QStringList("security:WPA Personal")
        << QByteArray("\n[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=\n"
                      "wep-key-type=0\nwep-tx-keyidx=0\n"
                      "\n\n[802-11-wireless]\nmtu=0\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("WEP to WPA takes the passphrase along")
        << QByteArray(kWepText) << QStringList("security:WPA Personal") << QByteArray(kWpaText);
    QTest::newRow("WEP to WPA2 is the same")
        << QByteArray(kWepText) << QStringList("security:WPA2 Personal") << QByteArray(kWpaText);
    QTest::newRow("WPA to WEP takes the passphrase along")
        << QByteArray(kWpaText) << QStringList("security:WEP") << QByteArray(kWepText);
    QTest::newRow("WEP to open: the security group and its mention go")
        << QByteArray("[802-11-wireless]\nmtu=0\n") + kWepText << QStringList("security:none")
        << openText;
    QTest::newRow("a name that is none of the types makes an open network")
        << QByteArray("[802-11-wireless]\nmtu=0\n") + kWpaText << QStringList("security:wep")
        << openText;

    QTest::newRow("the type that it has already: nothing changes")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\nleap-username=x\n")
        << QStringList("security:WPA Personal")
        << QByteArray("\n[802-11-wireless-security]\nkey-mgmt=wpa-psk\nleap-username=x\n\n\n\n");
    QTest::newRow("open to open: nothing changes")
        << QByteArray("[802-11-wireless]\nsecurity=802-11-wireless-security\n")
        << QStringList("security:none")
        << QByteArray("\n\n\n[802-11-wireless]\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("WPA to WPA2 rewrites the group")
        << QByteArray(kWpaText) + "[802-11-wireless-security]\nleap-username=x\n"
        << QStringList("security:WPA2 Personal") << QByteArray(kWpaText);
    QTest::newRow("WPA2 twice rewrites the same keys again")
        << QByteArray(kWepText)
        << (QStringList() << "security:WPA2 Personal"
                          << "security:WPA2 Personal")
        << QByteArray(kWpaText);

    QTest::newRow("WEP with a passphrase of 26 characters: key type 1")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=" + longKey.toLatin1())
        << QStringList("security:WEP")
        << QByteArray("\n[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=1\nwep-key0=aaaaaaaaaaaaaaaaaaaaaaaaaa\nwep-tx-keyidx=0\n"
                      "\n\n[802-11-wireless]\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("WEP with a passphrase of 27 characters: key type 2")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=" + passphrase.toLatin1())
        << QStringList("security:WEP")
        << QByteArray("\n[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=2\nwep-key0=aaaaaaaaaaaaaaaaaaaaaaaaaaa\nwep-tx-keyidx=0\n"
                      "\n\n[802-11-wireless]\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("WEP passphrase of 26 characters: key type 1")
        << QByteArray("[802-11-wireless-security]\nwep-key-type=2\n")
        << QStringList("passphrase:" + longKey)
        << QByteArray("\n[802-11-wireless-security]\nwep-key-type=1\n"
                      "wep-key0=aaaaaaaaaaaaaaaaaaaaaaaaaa\n\n\n\n");
    QTest::newRow("WEP passphrase of 27 characters: key type 2")
        << QByteArray("[802-11-wireless-security]\nwep-key-type=1\n")
        << QStringList("passphrase:" + passphrase)
        << QByteArray("\n[802-11-wireless-security]\nwep-key-type=2\n"
                      "wep-key0=aaaaaaaaaaaaaaaaaaaaaaaaaaa\n\n\n\n");
    QTest::newRow("WPA passphrase: the key type stays")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\nwep-key-type=0\n")
        << QStringList("passphrase:" + passphrase)
        << QByteArray("\n[802-11-wireless-security]\nkey-mgmt=wpa-psk\n"
                      "psk=aaaaaaaaaaaaaaaaaaaaaaaaaaa\nwep-key-type=0\n\n\n\n");
    QTest::newRow("empty passphrase") << QByteArray(kWpaText) << QStringList("passphrase:")
                                      << QByteArray(kWpaText).replace("psk=abcde", "psk=");
    QTest::newRow("passphrase of an open network is dropped")
        << openText << QStringList("passphrase:secret12") << openText;
    QTest::newRow("passphrase of an open network is not there for WEP later")
        << openText
        << (QStringList() << "passphrase:secret12"
                          << "security:WEP")
        << QByteArray("\n[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=1\nwep-key0=\nwep-tx-keyidx=0\n"
                      "\n\n[802-11-wireless]\nmtu=0\nsecurity=802-11-wireless-security\n\n");
    QTest::newRow("passphrase with a character outside Latin-1")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\n")
        << QStringList(QString::fromUtf8("passphrase:\xc3\xbc\xe2\x82\xac"))
        << QByteArray("\n[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=\xfc?\n\n\n\n");

    QTest::newRow("autoconnect on") << QByteArray() << QStringList("autoconnect:true")
                                    << QByteArray("\n\n[connection]\nautoconnect=true\n\n\n");
    QTest::newRow("autoconnect off")
        << QByteArray("[connection]\nautoconnect=true\n") << QStringList("autoconnect:false")
        << QByteArray("\n\n[connection]\nautoconnect=false\n\n\n");
}

void NMConfFileTest::editing()
{
    QFETCH(QByteArray, read);
    QFETCH(QStringList, changes);
    QFETCH(QByteArray, written);
    TestDirectory const directory;

    NMConfFile file(directory.write(kFileName, read));
    for (QString const& change : static_cast<QStringList const&>(changes)) {
        edit(file, change);
    }

    QCOMPARE(directory.read(kFileName), read);
    file.sync();
    QCOMPARE(directory.read(kFileName), written);
}

void NMConfFileTest::ssid_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("list of codes") << QByteArray("78;101;116;49;") << "Net1";
    QTest::newRow("last ; missing") << QByteArray("78;101") << "Ne";
    QTest::newRow("empty pieces are passed over") << QByteArray(";78;;101;") << "Ne";
    QTest::newRow("low 8 bits: 300 is a comma") << QByteArray("300;") << ",";
    QTest::newRow("low 8 bits of a negative number")
        << QByteArray("-1;") << QString::fromUtf8("\xc3\xbf");
    QTest::newRow("Latin-1") << QByteArray("228;") << QString::fromUtf8("\xc3\xa4");
    QTest::newRow("plain text is one character of code 0")
        << QByteArray("MyNet") << QString(QChar(0));
    QTest::newRow("number too large for an integer is code 0")
        << QByteArray("97;99999999999;") << QString("a") + QChar(0);
    QTest::newRow("hexadecimal is no number") << QByteArray("0x41;") << QString(QChar(0));
    QTest::newRow("empty") << QByteArray() << "";
}

void NMConfFileTest::ssid()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, expected);
    TestDirectory const directory;

    NMConfFile const file(directory.write(kFileName, "[802-11-wireless]\nssid=" + value + "\n"));

    QCOMPARE(file.ssid(), expected);
    QVERIFY(!file.ssid().isNull());
}

void NMConfFileTest::security_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("passphrase");

    QTest::newRow("no security group")
        << QByteArray("[802-11-wireless]\nsecurity=802-11-wireless-security\n") << "none"
        << "";
    QTest::newRow("empty security group") << QByteArray("[802-11-wireless-security]\n") << "none"
                                          << "";
    QTest::newRow("WPA") << QByteArray(
        "[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=abc\nwep-key0=def\n")
                         << "WPA Personal"
                         << "abc";
    QTest::newRow("WPA with the WEP key type that it is written with")
        << QByteArray(kWpaText) << "WPA Personal"
        << "abcde";
    QTest::newRow("WPA without a passphrase")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\n") << "WPA Personal"
        << "";
    QTest::newRow("WEP") << QByteArray(kWepText) << "WEP"
                         << "abcde";
    QTest::newRow("WEP by its key type alone")
        << QByteArray("[802-11-wireless-security]\nwep-key-type=\nwep-key0=def\n") << "WEP"
        << "def";
    QTest::newRow("WEP key without a key type")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=none\nwep-key0=def\n") << "none"
        << "";
    QTest::newRow("other key management")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-eap\npsk=abc\n") << "none"
        << "";
    QTest::newRow("key management in other letter case")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=WPA-PSK\npsk=abc\n") << "none"
        << "";
    QTest::newRow("passphrase with a =")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=ab=cd\n") << "WPA Personal"
        << "cd";
}

void NMConfFileTest::security()
{
    QFETCH(QByteArray, read);
    QFETCH(QString, security);
    QFETCH(QString, passphrase);
    TestDirectory const directory;

    NMConfFile const file(directory.write(kFileName, read));

    QCOMPARE(file.security(), security);
    QCOMPARE(file.passphrase(), passphrase);
    QVERIFY(!file.passphrase().isNull());
}

void NMConfFileTest::autoconnect_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<bool>("expected");

    QTest::newRow("missing") << QByteArray("[connection]\n") << false;
    QTest::newRow("empty") << QByteArray("[connection]\nautoconnect=\n") << false;
    QTest::newRow("0") << QByteArray("[connection]\nautoconnect=0\n") << false;
    QTest::newRow("false") << QByteArray("[connection]\nautoconnect=false\n") << false;
    QTest::newRow("False") << QByteArray("[connection]\nautoconnect=False\n") << false;
    QTest::newRow("true") << QByteArray("[connection]\nautoconnect=true\n") << true;
    QTest::newRow("1") << QByteArray("[connection]\nautoconnect=1\n") << true;
    QTest::newRow("any other text") << QByteArray("[connection]\nautoconnect=no\n") << true;
    QTest::newRow("of another group") << QByteArray("[ipv4]\nautoconnect=true\n") << false;
}

void NMConfFileTest::autoconnect()
{
    QFETCH(QByteArray, read);
    QFETCH(bool, expected);
    TestDirectory const directory;

    NMConfFile file(directory.write(kFileName, read));

    QCOMPARE(file.autoconnect(), expected);
    file.setAutoconnect(!expected);
    QCOMPARE(file.autoconnect(), !expected);
}

void NMConfFileTest::isWirelessConfig_data()
{
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<bool>("expected");

    QTest::newRow("wireless") << QByteArray("[connection]\ntype=802-11-wireless\n") << true;
    QTest::newRow("wired") << QByteArray("[connection]\ntype=802-3-ethernet\n") << false;
    QTest::newRow("the other name of the type") << QByteArray("[connection]\ntype=wifi\n") << false;
    QTest::newRow("no type") << QByteArray("[connection]\nid=x\n") << false;
    QTest::newRow("blank before the type")
        << QByteArray("[connection]\ntype= 802-11-wireless\n") << false;
    QTest::newRow("type of another group")
        << QByteArray("[802-11-wireless]\ntype=802-11-wireless\n") << false;
    QTest::newRow("empty file") << QByteArray() << false;
}

void NMConfFileTest::isWirelessConfig()
{
    QFETCH(QByteArray, read);
    QFETCH(bool, expected);
    TestDirectory const directory;

    NMConfFile const file(directory.write(kFileName, read));

    QCOMPARE(file.isWirelessConfig(), expected);
}

void NMConfFileTest::missingFileHasTheDefaultContent()
{
    TestDirectory const directory;
    QString const path = directory.path() + "/" + kFileName;

    NMConfFile const file(path);

    QCOMPARE(file.fileName(), path);
    QCOMPARE(file.toString(), QString::fromLatin1(kDefaultText));
    QVERIFY(file.isWirelessConfig());
    QVERIFY(file.autoconnect());
    QCOMPARE(file.security(), QString("none"));
}

void NMConfFileTest::nothingIsWrittenBeforeSync()
{
    TestDirectory const directory;
    {
        NMConfFile file(directory.path() + "/" + kFileName);
        file.setSsid("Net1");
    }
    QVERIFY(!QFile::exists(directory.path() + "/" + kFileName));
}

void NMConfFileTest::newFileIsForItsOwnerOnly()
{
    TestDirectory const directory;
    mode_t const oldMask = umask(0);
    NMConfFile(directory.path() + "/" + kFileName).sync();
    umask(oldMask);

    QCOMPARE(modeOf(directory.path() + "/" + kFileName), 0600);
    QCOMPARE(directory.read(kFileName), QByteArray(kDefaultText));
}

void NMConfFileTest::fileThatOthersCouldReadIsForItsOwnerOnly()
{
    TestDirectory const directory;
    QString const path = directory.write(kFileName, kWpaText);
    QCOMPARE(chmod(QFile::encodeName(path).constData(), 0644), 0);

    NMConfFile(path).sync();

    QCOMPARE(modeOf(path), 0600);
    QCOMPARE(directory.read(kFileName), QByteArray(kWpaText));
}

void NMConfFileTest::fileStaysAsItWasWhenItsWritingIsCutOff()
{
    TestDirectory const directory;
    QString const path = directory.write(kFileName, kWpaText);

    QCOMPARE(syncKilledAtFirstByte(path), SIGXFSZ);

    QCOMPARE(directory.read(kFileName), QByteArray(kWpaText));
}

void NMConfFileTest::fileThatMayNotBeReadIsNotWritten()
{
    TestDirectory const directory;
    QString const path = directory.write(kFileName, kWpaText);
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0777), 0);
    QCOMPARE(chmod(QFile::encodeName(path).constData(), S_IWUSR), 0);
    {
        WithoutPrivilege const withoutPrivilege(path);
        NMConfFile file(path);
        file.setSsid("Home");
        file.sync();
    }
    QCOMPARE(chmod(QFile::encodeName(path).constData(), S_IRUSR), 0);
    QCOMPARE(directory.read(kFileName), QByteArray(kWpaText));
}

void NMConfFileTest::fileThatALinkLeadsToIsWritten()
{
    TestDirectory const directory;
    QString const path = directory.write("elsewhere", kWpaText);
    QString const link = directory.path() + "/" + kFileName;
    QVERIFY(QFile::link(path, link));

    NMConfFile file(link);
    file.setAutoconnect(false);
    file.sync();

    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(!NMConfFile(path).autoconnect());
}

void NMConfFileTest::fileInADirectoryThatMayNotBeWrittenToIsRewritten()
{
    TestDirectory const directory;
    QByteArray const padding = "[other]\n" + QByteArray(10000, '\n');
    QString const path = directory.write(kFileName, padding + kWpaText);
    QCOMPARE(chmod(QFile::encodeName(path).constData(), 0644), 0);
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0555), 0);
    int syncs = 0;
    {
        WithoutPrivilege const withoutPrivilege(path);
        NMConfFile file(path);
        file.setAutoconnect(false);
        int const before = diskSyncs();
        file.sync();
        syncs = diskSyncs() - before;
    }
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
    QByteArray const expected
        = QByteArray(kWpaText).replace("\n\n\n[802", "\n\n[connection]\nautoconnect=false\n\n[802");
    QCOMPARE(directory.read(kFileName), expected);
    QCOMPARE(modeOf(path), 0600);
    QVERIFY(syncs > 0);
}

void NMConfFileTest::fileThatIsAMountOfItsOwnIsRewritten()
{
    TestDirectory const directory;
    QString const path = directory.write(kFileName, kWpaText);

    QVERIFY(ssidIsSetInAMount(path));

    QCOMPARE(NMConfFile(path).ssid(), QString("Home"));
    QCOMPARE(NMConfFile(path).passphrase(), QString("abcde"));
    QStringList const all = QDir(directory.path()).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(all, QStringList(kFileName));
}

void NMConfFileTest::fileThatMayBeNeitherReplacedNorWrittenStays()
{
    TestDirectory const directory;
    QString const path = directory.write(kFileName, kWpaText);
    QCOMPARE(chmod(QFile::encodeName(path).constData(), 0444), 0);
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0555), 0);
    {
        WithoutPrivilege const withoutPrivilege(path);
        NMConfFile file(path);
        file.setSsid("Home");
        file.sync();
    }
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
    QCOMPARE(directory.read(kFileName), QByteArray(kWpaText));
    QCOMPARE(modeOf(path), 0444);
}

void NMConfFileTest::newFileInADirectoryThatMayNotBeWrittenToIsNotMade()
{
    TestDirectory const directory;
    QString const other = directory.write("other", kWpaText);
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0555), 0);
    {
        WithoutPrivilege const withoutPrivilege(other);
        NMConfFile(directory.path() + "/" + kFileName).sync();
    }
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
    QStringList const all = QDir(directory.path()).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(all, QStringList("other"));
}

void NMConfFileTest::syncedFileIsOnTheDisk()
{
    TestDirectory const directory;
    int const before = diskSyncs();
    NMConfFile(directory.path() + "/" + kFileName).sync();
    QVERIFY(diskSyncs() > before);
}

void NMConfFileTest::syncReplacesALongerFile()
{
    TestDirectory const directory;
    QByteArray const padding = "[other]\n" + QByteArray(10000, '\n');
    QString const path = directory.write(kFileName, padding + kWpaText);

    NMConfFile(path).sync();

    QCOMPARE(directory.read(kFileName), QByteArray(kWpaText));
}

void NMConfFileTest::textThatIsMissingIsEmptyAndNotNull()
{
    TestDirectory const directory;
    NMConfFile file(directory.write(kFileName, QByteArray()));

    QVERIFY(!file.ssid().isNull());
    QVERIFY(!file.security().isNull());
    QVERIFY(!file.passphrase().isNull());

    file.setSsid(QString());
    file.setSecurity("WEP");
    file.setPassphrase(QString());
    QVERIFY(!file.ssid().isNull());
    QVERIFY(!file.passphrase().isNull());
    file.setSecurity("WPA Personal");
    QVERIFY(!file.passphrase().isNull());
}

void NMConfFileTest::loadingAgainReplacesWhatTheFileHoldsAndKeepsTheRest()
{
    TestDirectory const directory;
    NMConfFile file(directory.write(kFileName, "[802-11-wireless]\nssid=97;\n"));
    file.setSsid("b");
    file.setAutoconnect(true);

    file.loadConfig();

    QCOMPARE(file.toString(),
             QString("\n\n[connection]\nautoconnect=true\n\n[802-11-wireless]\nssid=97;\n\n"));
}

void NMConfFileTest::loadingAgainAfterSyncReadsWhatWasWritten()
{
    TestDirectory const directory;
    NMConfFile file(directory.path() + "/" + kFileName);
    file.setSsid("a");
    file.sync();
    file.setSsid("b");

    file.loadConfig();

    QCOMPARE(file.ssid(), QString("a"));
}

void NMConfFileTest::pathOfADirectoryIsReadAsNothingAndNotWritten()
{
    TestDirectory const directory;
    int const mode = modeOf(directory.path());

    NMConfFile file(directory.path());
    QCOMPARE(file.toString(), QString::fromLatin1(kNoKeys));
    file.sync();

    QVERIFY(QFileInfo(directory.path()).isDir());
    QCOMPARE(modeOf(directory.path()), mode);
}

void NMConfFileTest::pathOfAPipeIsReadAsNothingAndNotWritten()
{
    TestDirectory const directory;
    QString const path = directory.file(kFileName);
    QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0644) == 0);

    NMConfFile file(path);
    QCOMPARE(file.toString(), QString::fromLatin1(kNoKeys));
    file.sync();
    QCOMPARE(modeOf(path), 0644);
}

void NMConfFileTest::pathInAMissingDirectoryIsNotWritten()
{
    TestDirectory const directory;
    WarningRecorder const recorder;

    NMConfFile file(directory.path() + "/missing/connection");
    file.sync();

    QCOMPARE(file.toString(), QString::fromLatin1(kDefaultText));
    QVERIFY(!QFile::exists(directory.path() + "/missing"));
    QCOMPARE(recorder.warnings(), QStringList());
}

void NMConfFileTest::fileThatClaimsMoreThanItHoldsIsReadToItsEnd()
{
    // A file of the kernel's: 4096 bytes by its status, a few digits when it is read.
    QString const path = "/sys/class/net/lo/mtu";
    QVERIFY(QFileInfo(path).size() > 1000);
    WarningRecorder const recorder;

    NMConfFile const file(path);

    QCOMPARE(file.toString(), QString::fromLatin1(kNoKeys));
    QCOMPARE(recorder.warnings().size(), 1);
}

void NMConfFileTest::whatWasWrittenReadsBackTheSame()
{
    TestDirectory const directory;
    QString const path = directory.path() + "/" + kFileName;
    QString everyByte;
    for (int code = 0; code < 256; ++code) {
        everyByte.append(QChar(code));
    }
    NMConfFile written(path);
    written.setSsid(everyByte);
    written.setSecurity("WPA2 Personal");
    written.setPassphrase(QString::fromUtf8("caf\xc3\xa9 au lait"));
    written.sync();

    NMConfFile const read(path);

    QCOMPARE(read.ssid(), everyByte);
    QCOMPARE(read.security(), QString("WPA Personal"));
    QCOMPARE(read.passphrase(), QString::fromUtf8("caf\xc3\xa9 au lait"));
    QCOMPARE(read.toString(), written.toString());
}

ZELVO_TEST(NMConfFileTest)
#include "NMConfFileTest.moc"
