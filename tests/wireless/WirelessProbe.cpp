// SPDX-License-Identifier: MIT

// Calls the functions of the wireless system, in the order of its arguments, in a process whose
// system bus is a test's own:
//
//   firstDevice  enabled  deactivate   the function of that name; its result is a line of output
//   wait                               reads a line of input, having written "waiting"

#include "wireless/WirelessSystem.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <iostream>
#include <string>

namespace {

void wait()
{
    std::cout << "waiting" << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

void firstDevice()
{
    QString const device = wireless_firstHalDevice();
    std::cout << "firstDevice " << (device.isNull() ? "null" : qPrintable(device)) << std::endl;
}

bool call(QString const& function)
{
    if (function == "firstDevice") {
        firstDevice();
    } else if (function == "enabled") {
        std::cout << "enabled " << (wireless_isEnabled() ? "true" : "false") << std::endl;
    } else if (function == "deactivate") {
        wireless_deactivateConnections();
        std::cout << "deactivate" << std::endl;
    } else if (function == "wait") {
        wait();
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList const functions = application.arguments().mid(1);
    for (QString const& function : functions) {
        if (!call(function)) {
            std::cerr << "no such function: " << qPrintable(function) << std::endl;
            return 2;
        }
    }
    return 0;
}
