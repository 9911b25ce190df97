#pragma once

#include <cstddef>

class Stage;

/// What is to be seen of a screen besides how it comes up.
struct AreaState {
    const char* title;  ///< the screen's in the registry
    const char* name;   ///< no two of a screen are the same
    void (*arrange)(Stage& stage);
};

/// The states of the screens of one area.
class AreaStates {
 public:
    template <std::size_t count>
    AreaStates(const AreaState (&states)[count]) : begin_(states), end_(states + count) {}

    const AreaState* begin() const { return begin_; }
    const AreaState* end() const { return end_; }

 private:
    const AreaState* begin_;
    const AreaState* end_;
};

/// Each is a list in the file of its area, areas/<area>_states.cpp. A screen's states may come from
/// several.
AreaStates shellStates();
AreaStates doorStates();
AreaStates usbStates();
AreaStates usersStates();
AreaStates enrolmentStates();
AreaStates peopleStates();
AreaStates settingsStates();
AreaStates deviceStates();
AreaStates factoryStates();
AreaStates logsStates();
AreaStates facesearchStates();
