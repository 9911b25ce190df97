#pragma once

#include "link/device_records.h"

class Stage;

/// States of the screens at the door: what the live view, the result and the standby screen show
/// of the settings, the operating status and the people who come.
namespace DoorStates {

enum Operation : std::uint8_t { Access, Attendance, Meals };
enum Day { Weekday, Saturday };

/// The live view with the operating status @p status on such a day.
void live(Stage& stage, Operation operation, int status, Day day = Weekday);
/// The same on a terminal whose strip offers all four buttons.
void liveWithAllButtons(Stage& stage, Operation operation, int status);
/// The live view of a terminal that records nothing but coming back.
void liveReturnOnly(Stage& stage);
/// A face before the camera, fields as in TrackedFace.
void face(Stage& stage, std::uint8_t state, std::uint8_t reason = 0);
/// A card that nobody has.
void unknownCard(Stage& stage);
void visitorCall(Stage& stage);
void mealCounts(Stage& stage);

/// The settings of a terminal that counts meals.
_gui_menu_ mealSettings(const Stage& stage);

/// The result for the user number @p user of a fresh controller.
void result(Stage& stage, int user, std::uint8_t result, Operation operation, int status);
/// The same with the question which attendance event it is; @p button is then touched, if any.
void question(Stage& stage, const char* button);
/// The event @p key is recorded already, on a terminal fixed to it.
void recorded(Stage& stage, std::uint8_t key);
/// Somebody whose name is as long as names get.
void longestName(Stage& stage, const char* name);
/// A meal is asked for, plus is touched @p more times, and then payment if @p pay.
void meal(Stage& stage, int status, int more, bool pay);
/// The recognition arms (1) or disarms (2).
void alarm(Stage& stage, std::uint8_t mode);
void demonstration(Stage& stage);

/// The controller has recorded an access, or the refusal of one.
void recordedEvent(Stage& stage, bool accepted);
/// The management service is in use, but nobody has found it.
void serviceLost(Stage& stage);

/// The standby screen with a chosen picture and a logo.
void chosenPicture(Stage& stage);
void asleep(Stage& stage);

}  // namespace DoorStates
