#pragma once

#include <QString>

class IConfigEntry;

/// What one request knows about the folders of the wrapper scripts.
///
/// Most areas of the view ("zelvo-view/usb") have no folder at all, and a request looks for scripts
/// at every level of a key, several times. So the file system is asked once whether there is a
/// folder for the area, and anew as soon as that is to be forgotten. All entries that an object is
/// asked about are of one view.
class WrapperFolders
{
public:
    WrapperFolders();

    /// Whether the entry's area has no folder, and the entry thus no file.
    bool areMissing(IConfigEntry const& entry);

    void forget();

private:
    // The area that was asked about last; null when there is none.
    QString mArea;
    bool mIsMissing;
};
