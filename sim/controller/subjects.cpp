#include "sim/controller/subjects.h"

std::vector<std::unique_ptr<Subject>> makeSubjects(Device& device) {
    std::vector<std::unique_ptr<Subject>> subjects;
    subjects.push_back(makeSettingsSubject(device));
    subjects.push_back(makeScreenSoundSubject(device));
    subjects.push_back(makeStatusSubject(device));
    subjects.push_back(makeSessionSubject(device));
    subjects.push_back(makeFirmwareSubject(device));
    subjects.push_back(makeReportsSubject(device));
    subjects.push_back(makeLogsSubject(device));
    subjects.push_back(makeRecognitionSubject(device));
    subjects.push_back(makeUsbSubject(device));
    subjects.push_back(makeUsersSubject(device));
    subjects.push_back(makeSearchSubject(device));
    subjects.push_back(makeHostSubject(device));
    subjects.push_back(makeEnrolmentSubject(device));
    subjects.push_back(makeFactorySubject(device));
    return subjects;
}
