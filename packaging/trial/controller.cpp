// The least that uses the development package: a controller that counts the frames of a greeting.
#include <link/command_code.h>
#include <link/device_records.h>
#include <link/frame_parser.h>

#include <cstring>

int main() {
    int frames = 0;
    FrameParser parser([&frames](std::uint16_t code, std::uint8_t, std::uint8_t, std::uint16_t,
                                 const char*) { frames += code == command::Greeting ? 1 : 0; });
    const QByteArray frame = Frame::build(command::Greeting, 0, 0);
    std::memcpy(parser.writePosition(), frame.constData(), static_cast<std::size_t>(frame.size()));
    parser.consume(static_cast<std::size_t>(frame.size()));
    return frames == 1 ? 0 : 1;
}
