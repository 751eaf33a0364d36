// Decodes previews for the program, which starts it with a socket as descriptor 3. It has no use of
// its own.

#include "preview/decoder/DecoderServer.hpp"

#include <cstdio>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

int main()
{
    using namespace tessaly;
    constexpr int socketNumber = 3;
    int type = 0;
    socklen_t length = sizeof type;
    // It may be started by hand, from a terminal.
    if (getsockopt(socketNumber, SOL_SOCKET, SO_TYPE, &type, &length) != 0 ||
        type != SOCK_SEQPACKET) {
        std::fputs("This program is a part of Tessaly, which starts it for previews.\n", stderr);
        return 2;
    }
    // Libraries of the program may hold descriptors without FD_CLOEXEC, which a hostile file must
    // not reach.
    closefrom(socketNumber + 1);
    DecoderServer server{MessageSocket(scan::FileDescriptor(socketNumber))};
    server.run();
    return 0;
}
