#pragma once

#include <QString>

class IConfigEntry;

/// What one request knows about the folders of the wrapper scripts.
///
/// Most areas of the view ("zelvo-view/usb") have no folder at all, and a request looks for scripts at
/// every level of a key, several times. So while an object of this class lives, the file system is
/// asked once whether there is a folder for the area. It is asked anew as soon as a script has run,
/// which may have made one. Without an object nothing is remembered.
///
/// An object belongs to its thread and lies on its stack: objects nest like the requests. All entries
/// that it is asked about are of one view.
class WrapperFolders
{
public:
    WrapperFolders();

    /// Lets the object around this one forget: the request that ends may have run scripts.
    ~WrapperFolders();

    /// Whether the entry's area is known to have no folder, and the entry thus no file.
    static bool sAreMissing(IConfigEntry const& entry);

    /// To be called when a script has run.
    static void sForget();

private:
    Q_DISABLE_COPY(WrapperFolders)

    bool areMissing(IConfigEntry const& entry);

    static thread_local WrapperFolders* smCurrent;

    WrapperFolders* const mAround;
    // The area that was asked about last; null when there is none.
    QString mArea;
    bool mIsMissing;
};
