// Asks a face-search server about pictures: zel-face-search ADDRESS [PORT]. Each line of standard
// input is the path of a picture; q ends it.
#include <cstdio>

#include "screens/facesearch/face_search_server.h"
#include "screens/facesearch/fsv_start.h"

int main(int argc, char* argv[]) {
    QString named = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (argc == 3)
        named += QLatin1Char(':') + QString::fromLocal8Bit(argv[2]);
    const auto server = FaceSearchServer::fromText(named);
    if (argc < 2 || argc > 3 || !server) {
        std::fputs(
            "usage: zel-face-search ADDRESS [PORT]\n"
            "Asks the face-search server at ADDRESS (dotted IPv4; port 5000 unless given) whom\n"
            "faces belong to. Type the path of a picture; q ends it.\n",
            stderr);
        return 2;
    }
    FsvConsole console;
    FsvSession session;
    session.server = *server;
    session.console = &console;
    return fsvKeepUp(session, false) == FsvEnd::NotConnected ? 1 : 0;
}
