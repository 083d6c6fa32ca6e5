// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class IConfigEntry;

/// A request of the host while it is served, and what it has seen so far.
///
/// An object lies on the stack of the thread that serves the request, and the kit knows the
/// innermost one: they nest like the requests. That thread alone sees it; a script that runs beside
/// the request, on a thread of an apply, finds none. Without an object nothing is remembered.
///
/// Most areas of the view ("zelvo-view/usb") have no folder of scripts at all, and a request looks
/// for scripts at every level of a key, several times. So it asks the file system once whether
/// there is a folder for the area. All its entries are of one view.
class RequestContext
{
public:
    enum Operation { Get, Set, Create, Del, Commit, Apply };

    RequestContext(Operation operation, QString const& key);

    /// Lets the request around this one forget the folders: the one that ends may have run scripts.
    ~RequestContext();

    /// Whether the same request is being served already, and has led to this one.
    bool isRepeated() const;

    bool isOutermost() const { return !mAround; }

    /// Tells the observer where the value comes from that is answered for `entry`.
    void valueWasRead(IConfigEntry const& entry) const;

    /// Whether the request of the calling thread knows that the entry's area has no folder, and the
    /// entry thus no file.
    static bool sAreFoldersMissing(IConfigEntry const& entry);

    /// To be called when a script has run, which may have made folders.
    static void sForgetFolders();

    /// To be called when a script has answered a value.
    static void sScriptHasAnswered();

private:
    Q_DISABLE_COPY(RequestContext)

    Operation const mOperation;
    QString const mKey;
    RequestContext* const mAround;
    // The area that was asked about last; null when there is none.
    QString mArea;
    bool mIsAreaMissing = false;
    bool mIsAnsweredByScript = false;
};
