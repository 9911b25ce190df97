// Loaded into a program, has SIGUSR1 block the program's first thread for good. All others go on.
#include <signal.h>
#include <unistd.h>

namespace {

void block(int) {
    for (;;)
        ::pause();
}

__attribute__((constructor)) void arm() {
    ::signal(SIGUSR1, block);
}

}  // namespace
