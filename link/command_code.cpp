#include "link/command_code.h"

namespace command {
namespace {

constexpr Direction G = Direction::ToController;
constexpr Direction C = Direction::FromController;

constexpr Description kCommands[] = {
#define ZEL_COMMAND_ROW(name, code, direction) {#name, code, direction},
    ZEL_COMMANDS(ZEL_COMMAND_ROW)
#undef ZEL_COMMAND_ROW
};

}  // namespace

const Description* all() {
    return kCommands;
}

std::size_t count() {
    return sizeof kCommands / sizeof kCommands[0];
}

const char* name(std::uint16_t code, Direction direction) {
    for (const Description& row : kCommands) {
        if (row.code == code && row.direction == direction)
            return row.name;
    }
    return "unknown";
}

}  // namespace command
