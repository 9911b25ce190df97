#include "tools/gallery/area_states.h"

#include "link/command_code.h"
#include "tools/gallery/stage.h"

namespace {

/// The I/O test after @p done steps, of which the first @p passed have passed.
void factoryIo(Stage& stage, int done, int passed) {
    for (int step = 0; step < done; ++step) {
        if (step < passed)
            stage.receive(command::FactoryIoReport, static_cast<unsigned char>(step),
                          static_cast<unsigned char>(1));
        stage.receive(command::FactoryIoStepDone, static_cast<unsigned char>(step));
    }
}

constexpr AreaState kStates[] = {
    {"f_ioTestWindow", "passed", [](Stage& stage) { factoryIo(stage, 3, 3); }},
    {"f_ioTestWindow", "failed", [](Stage& stage) { factoryIo(stage, 2, 1); }},
};

}  // namespace

AreaStates factoryStates() {
    return kStates;
}
