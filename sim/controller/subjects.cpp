#include "sim/controller/subjects.h"

std::vector<std::unique_ptr<Subject>> makeSubjects(Device& device) {
    std::vector<std::unique_ptr<Subject>> subjects;
    subjects.push_back(makeSessionSubject(device));
    subjects.push_back(makeSettingsSubject(device));
    return subjects;
}
