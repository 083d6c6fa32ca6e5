// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class NMConfFile;
class QDir;

// How the wireless settings reach the system: the connection file that they edit, and
// NetworkManager on the D-Bus system bus. The functions keep no state but the connection, and each
// blocks until its calls on the bus are answered or the D-Bus binding's time-out has passed. What
// goes wrong on the bus gives the empty result; a bus or a NetworkManager that is not there is a
// warning as well. A bus that is started anew is used from the next call on.

/// The connection file to edit: the first one of a wireless connection in `dir`, by name in the
/// order of character codes, whoever wrote it; without one, the file "Zelvo" in `dir`, which need
/// not exist yet. Directories and hidden files are not looked at.
///
/// @return never null; belongs to the caller.
NMConfFile* wireless_defaultNmConfig(QDir const& dir);

/// The object path of the first wireless device that NetworkManager knows, or a null string when
/// there is none or the bus fails. The platform's name, kept as it is: no HAL is asked.
QString wireless_firstHalDevice();

/// Whether there is a wireless device.
bool wireless_isEnabled();

/// Asks NetworkManager to deactivate every active connection that uses a wireless device, once for
/// each such device. Its answers are not looked at.
void wireless_deactivateConnections();
