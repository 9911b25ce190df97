#pragma once

#include <memory>
#include <vector>

#include "sim/controller/subject.h"

/// All subjects, in the order in which `help` shows their words.
std::vector<std::unique_ptr<Subject>> makeSubjects(Device& device);

// Each is defined in the source file of its name.
std::unique_ptr<Subject> makeEnrolmentSubject(Device& device);
std::unique_ptr<Subject> makeFactorySubject(Device& device);
std::unique_ptr<Subject> makeFirmwareSubject(Device& device);
std::unique_ptr<Subject> makeHostSubject(Device& device);
std::unique_ptr<Subject> makeLogsSubject(Device& device);
std::unique_ptr<Subject> makeRecognitionSubject(Device& device);
std::unique_ptr<Subject> makeReportsSubject(Device& device);
std::unique_ptr<Subject> makeSearchSubject(Device& device);
std::unique_ptr<Subject> makeScreenSoundSubject(Device& device);
std::unique_ptr<Subject> makeSessionSubject(Device& device);
std::unique_ptr<Subject> makeSettingsSubject(Device& device);
std::unique_ptr<Subject> makeStatusSubject(Device& device);
std::unique_ptr<Subject> makeUsbSubject(Device& device);
std::unique_ptr<Subject> makeUsersSubject(Device& device);
