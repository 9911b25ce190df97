#include "ui/key_click.h"

#include <utility>

namespace {

std::function<void()>& theHandler() {
    static std::function<void()> handler;
    return handler;
}

}  // namespace

namespace KeyClick {

void setHandler(std::function<void()> handler) {
    theHandler() = std::move(handler);
}

void send() {
    if (theHandler())
        theHandler()();
}

}  // namespace KeyClick
