// SPDX-License-Identifier: MIT

#include "doctor/EmptyValue.h"

#include "support/TestProgram.h"

#include <QtTest>

class EmptyValueTest : public QObject
{
    Q_OBJECT

private slots:
    void keptAsItIs_data();
    void keptAsItIs();
    void shellsAreKnownByTheirNames_data();
    void shellsAreKnownByTheirNames();
    void lookedAt_data();
    void lookedAt();
    void notGuessed_data();
    void notGuessed();
};

void EmptyValueTest::keptAsItIs_data()
{
    QTest::addColumn<QByteArray>("commands");

    QTest::newRow("a copy") << QByteArray("cp \"$1\" /etc/banner\n");
    QTest::newRow("a copy behind a set -e") << QByteArray("set -e\ncp -- \"$1\" /etc/banner");
    QTest::newRow("braces") << QByteArray("cat ${1} >/etc/banner\n");
    QTest::newRow("all arguments") << QByteArray("cat \"$@\" >/etc/banner\n");
    QTest::newRow("all arguments as one word") << QByteArray("cat $* >/etc/banner\n");
    QTest::newRow("a variable") << QByteArray(
        "name=$(cat \"$1\")\nprintf %s \"$name\" >/etc/name\n");
    QTest::newRow("a variable of backquotes")
        << QByteArray("name=`cat $1`\nprintf %s \"$name\" >/etc/name\n");
    QTest::newRow("a variable read")
        << QByteArray("read -r name <\"$1\"\necho \"$name\" >/etc/name\n");
    QTest::newRow("a test in a comment")
        << QByteArray("# [ -s \"$1\" ] || exit 1\ncp \"$1\" /etc/banner # [ -s \"$1\" ]\n");
    QTest::newRow("an apostrophe in a comment")
        << QByteArray("# doesn't look\ncp \"$1\" /etc/banner\n");
    QTest::newRow("a test in a text")
        << QByteArray("cp \"$1\" /etc/banner\nprintf '[ -s \"$1\" ]'\n");
    QTest::newRow("a number sign within a word") << QByteArray("cp \"$1\" a#b; c=${d#e}\n");
    QTest::newRow("another file is tested")
        << QByteArray("test -s /etc/pile || exit 1\ncp \"$1\" /etc/pile\n");
    QTest::newRow("another variable's file is tested")
        << QByteArray("pile=/etc/pile\n[ -s \"$pile\" ] || exit 1\ncp \"$1\" \"$pile\"\n");
    QTest::newRow("another variable is tested")
        << QByteArray("test -n \"$HOME\" || exit 1\ncp \"$1\" \"$HOME/x\"\n");
    QTest::newRow("another variable has a default") << QByteArray("cp \"$1\" \"${DIR:-/etc}/x\"\n");
    QTest::newRow("the tested one is not the value")
        << QByteArray("case $REG_SET in a) f=x ;; *) f=y ;; esac\ncp \"$1\" \"$f\"\n");
    QTest::newRow("the file's name is tested")
        << QByteArray("[ -n \"$1\" ] || exit 1\ncp \"$1\" x\n");
    QTest::newRow("the file's presence is tested")
        << QByteArray("test -r \"$1\" || exit 1\ncp \"$1\" x\n");
    QTest::newRow("the file's name in a variable is tested")
        << QByteArray("value=\"$1\"\n[ -z \"$value\" ] && exit 1\ncp \"$value\" x\n");
    QTest::newRow("the file's name has a default") << QByteArray("cp \"${1:?}\" x\n");
    QTest::newRow("another program's -s") << QByteArray("tr -s ' ' <\"$1\" >x\n");
    QTest::newRow("a folder of its own") << QByteArray("dir=/etc\ncp \"$1\" \"${dir}/x\"\n");
    QTest::newRow("a program of the system") << QByteArray("/bin/cp \"$1\" /etc/x\n");
    QTest::newRow("a last exit that may be 0") << QByteArray("cp \"$1\" x && exit 0\nexit 1\n");
    QTest::newRow("an exit with what came of it") << QByteArray("cp \"$1\" x\nexit $?\n");
}

void EmptyValueTest::keptAsItIs()
{
    QFETCH(QByteArray, commands);

    QVERIFY(seemsToKeepEmptyValue("#!/bin/sh\n" + commands));
}

void EmptyValueTest::shellsAreKnownByTheirNames_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isShell");

    QTest::newRow("sh") << QByteArray("#!/bin/sh") << true;
    QTest::newRow("an option") << QByteArray("#! /bin/sh -u") << true;
    QTest::newRow("bash") << QByteArray("#!/usr/local/bin/bash") << true;
    QTest::newRow("dash") << QByteArray("#!/bin/dash") << true;
    QTest::newRow("env") << QByteArray("#!/usr/bin/env sh") << true;
    QTest::newRow("env that splits") << QByteArray("#!/usr/bin/env -S bash -u") << true;
    QTest::newRow("busybox") << QByteArray("#!/bin/busybox sh") << true;
    QTest::newRow("a word that only ends like a shell") << QByteArray("#!/usr/bin/fish") << false;
    QTest::newRow("an option like a shell") << QByteArray("#!/usr/bin/perl sh") << false;
    QTest::newRow("a comment") << QByteArray("# /bin/sh") << false;
}

void EmptyValueTest::shellsAreKnownByTheirNames()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, isShell);

    QCOMPARE(seemsToKeepEmptyValue(line + "\ncp \"$1\" x\n"), isShell);
}

void EmptyValueTest::lookedAt_data()
{
    QTest::addColumn<QByteArray>("commands");

    QTest::newRow("-s") << QByteArray("[ -s \"$1\" ] || exit 1\ncp \"$1\" x\n");
    QTest::newRow("-s of test") << QByteArray("set -e\ntest -s \"$1\"\ncp \"$1\" x\n");
    QTest::newRow("-s without quotes, in braces")
        << QByteArray("if ! [ -s ${1} ]; then exit 1; fi\ncp $1 x\n");
    QTest::newRow("-s among others")
        << QByteArray("[ -f \"$1\" -a -s \"$1\" ] || exit 1\ncp \"$1\" x\n");
    QTest::newRow("-s behind another test")
        << QByteArray("[ -f \"$1\" ] && [ -s \"$1\" ] && cp \"$1\" x\n");
    QTest::newRow("-s in double brackets") << QByteArray("[[ ! -s $1 ]] && exit 1\ncp \"$1\" x\n");
    QTest::newRow("-s of another name of the file")
        << QByteArray("value=\"$1\"\n[ -s \"$value\" ] || exit 1\ncp \"$value\" x\n");
    QByteArray const name("name=$(cat \"$1\")\n");
    QByteArray const keep("echo \"$name\" >x\n");
    QTest::newRow("-n") << name + "[ -n \"$name\" ] || exit 1\n" + keep;
    QTest::newRow("-z") << name + "test -z \"$name\" && exit 1\n" + keep;
    QTest::newRow("a word") << name + "[ \"$name\" ] || exit 1\n" + keep;
    QTest::newRow("a comparison") << name + "[ \"$name\" = on ] || exit 1\n" + keep;
    QTest::newRow("its length") << name + "[ ${#name} -gt 0 ] || exit 1\n" + keep;
    QTest::newRow("case") << name + "case $name in\n    '' | -*) exit 1 ;;\nesac\n" + keep;
    QTest::newRow("case of the file")
        << QByteArray("case $(cat \"$1\") in on) a ;; off) b ;; esac\n");
    QTest::newRow("case of backquotes")
        << QByteArray("case \"`cat $1`\" in on) a ;; off) b ;; esac\n");
    QTest::newRow("an expansion that fails") << name + "echo \"${name:?}\" >x\n";
    QTest::newRow("an expansion with a default") << name + "echo \"${name:-none}\" >x\n";
    QTest::newRow("a variable of a variable")
        << name + "short=${name%% *}\n[ \"$short\" ] || exit 1\n" + keep;
    QTest::newRow("a variable of several lines")
        << QByteArray("name=$(\n    tr a b <\"$1\"\n)\n[ \"$name\" ] || exit 1\n") + keep;
    QTest::newRow("a local variable") << QByteArray(
        "f() {\n    local name=$(cat \"$1\")\n    [ \"$name\" ] || exit 1\n}\nf \"$1\"\n");
    QTest::newRow("an argument of a function")
        << QByteArray("keep() { [ \"$1\" ] && echo \"$1\" >x; }\nkeep \"$(cat \"$1\")\"\n");
    QTest::newRow("set as arguments")
        << QByteArray("set -- $(cat \"$1\")\n[ \"$1\" ] || exit 1\necho \"$1\" >x\n");
    QTest::newRow("its size") << QByteArray("[ \"$(wc -c <\"$1\")\" -gt 0 ] && cp \"$1\" x\n");
    QTest::newRow("a read that may fail") << QByteArray("read -r name <\"$1\" || exit 1\n") + keep;
    QTest::newRow("a read that ends the script")
        << QByteArray("set -eu\nread -r name <\"$1\"\n") + keep;
    QTest::newRow("a tested variable of read")
        << QByteArray("IFS= read -r name rest <\"$1\"\n[ \"$rest\" ] && exit 1\n") + keep;
    QTest::newRow("a loop of lines")
        << QByteArray("while read -r line; do echo \"$line\"; done <\"$1\" >x\n");
    QTest::newRow("a loop of words")
        << QByteArray("for word in $(cat \"$1\"); do echo $word >x; done\n");
    QTest::newRow("grep") << QByteArray("grep -q . \"$1\" || exit 1\ncp \"$1\" x\n");
    QTest::newRow("grep behind a pipe")
        << name + "printf %s \"$name\" |\n    grep -q '^[a-z]*$' || exit 1\n" + keep;
    QTest::newRow("a quote within a quote")
        << QByteArray("name=\"$(sed 's/\"//' \"$1\")\"\n[ \"$name\" ] || exit 1\n") + keep;
    QTest::newRow("a line that goes on")
        << QByteArray("[ -s \\\n \"$1\" ] || exit 1\ncp \"$1\" x\n");
}

void EmptyValueTest::lookedAt()
{
    QFETCH(QByteArray, commands);

    QVERIFY(!seemsToKeepEmptyValue("#!/bin/sh\n" + commands));
}

void EmptyValueTest::notGuessed_data()
{
    QTest::addColumn<QByteArray>("script");

    QByteArray const copy("cp \"$1\" /etc/banner\n");
    QTest::newRow("no script") << QByteArray();
    QTest::newRow("no interpreter") << copy;
    QTest::newRow("another language") << "#!/usr/bin/python3\n" + copy;
    QTest::newRow("another language by env") << "#!/usr/bin/env perl\n" + copy;
    QTest::newRow("a language that only ends like a shell") << "#!/usr/bin/fish\n" + copy;
    QTest::newRow("a value that is not used") << QByteArray("#!/bin/sh\nsync\n");
    QTest::newRow("an argument in a text") << QByteArray("#!/bin/sh\nsed 's/$1/x/' /etc/y\n");
    QTest::newRow("one that never succeeds") << "#!/bin/sh\n" + copy + "exit 1\n";
    QTest::newRow("a program beside it") << QByteArray("#!/bin/sh\n./keep \"$1\"\n");
    QTest::newRow("a program by its full path")
        << QByteArray("#!/bin/sh\nif ! /usr/lib/kiosk/keep \"$1\"; then exit 1; fi\n");
    QTest::newRow("a program beside it by the script's name")
        << QByteArray("#!/bin/sh\n\"$(dirname \"$0\")\"/keep \"$1\"\n");
    QTest::newRow("functions of another file") << "#!/bin/sh\n. ../functions\n" + copy;
    QTest::newRow("functions of another file, in bash")
        << "#!/bin/bash\nsource ../functions\n" + copy;
    QTest::newRow("another shell's commands")
        << QByteArray("#!/bin/sh\nsh -c 'cat \"$1\"' - \"$1\"\n");
    QTest::newRow("a double quote that does not close")
        << "#!/bin/sh\necho \"\n" + copy + "echo '\"'\n";
    QTest::newRow("a single quote that does not close") << "#!/bin/sh\n" + copy + "echo it's\n";
    QTest::newRow("a read that ends the script by its first line")
        << QByteArray("#!/bin/sh -e\nread -r name <\"$1\"\necho \"$name\" >x\n");
    QTest::newRow("a long script") << "#!/bin/sh\n" + copy + QByteArray(1 << 14, '\n');
}

void EmptyValueTest::notGuessed()
{
    QFETCH(QByteArray, script);

    QVERIFY(!seemsToKeepEmptyValue(script));
}

ZELVO_TEST(EmptyValueTest)
#include "EmptyValueTest.moc"
