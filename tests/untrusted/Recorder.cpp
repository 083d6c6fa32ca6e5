// SPDX-License-Identifier: MIT

// A wrapper script that is a program: writes down how it was started, and answers like a script
// that fails, so that the request goes on to the key's own back end. "isVisible.sh" alone succeeds.
//
// Appends to /tmp/untrusted-record a list of fields, each as its length, a blank and its bytes: the
// number of arguments and the arguments, the number of variables and the variables, the folder that
// it runs in, and the content of the file that a second argument names (else an empty field).

#include <climits>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

extern char** environ;

namespace {

char const kRecord[] = "/tmp/untrusted-record";

std::string field(std::string const& bytes)
{
    return std::to_string(bytes.size()) + ' ' + bytes;
}

std::string list(char const* const* texts)
{
    std::string fields;
    int count = 0;
    for (; texts[count]; ++count)
        fields += field(texts[count]);
    return field(std::to_string(count)) + fields;
}

std::string currentFolder()
{
    char path[PATH_MAX];
    return getcwd(path, sizeof path) ? path : "";
}

std::string content(char const* fileName)
{
    std::ostringstream bytes;
    bytes << std::ifstream(fileName, std::ios::binary).rdbuf();
    return bytes.str();
}

/// In one piece, as several of these may run at once.
bool append(std::string const& record)
{
    int const file = open(kRecord, O_WRONLY | O_APPEND | O_CREAT, 0600);
    return file >= 0 && write(file, record.data(), record.size()) == ssize_t(record.size());
}

} // namespace

int main(int argc, char** argv)
{
    bool const isWritten = append(list(argv) + list(environ) + field(currentFolder())
                                  + field(argc > 1 ? content(argv[1]) : std::string()));
    return isWritten && std::strstr(argv[0], "/isVisible.sh") ? 0 : 1;
}
