#include "sim/common/relaunch.h"

#include <unistd.h>

#include <cstdio>

Relaunch::Relaunch(int argc, char* const argv[]) {
    for (int i = 0; i < argc; ++i)
        arguments_.append(argv[i]);
}

int Relaunch::finish(int status) const {
    if (status != kStatus)
        return status;
    QVector<char*> arguments;
    for (const QByteArray& argument : arguments_)
        arguments.append(const_cast<char*>(argument.constData()));
    arguments.append(nullptr);
    ::execvp(arguments.first(), arguments.data());
    std::perror(arguments.first());
    return 1;
}
