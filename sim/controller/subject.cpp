#include "sim/controller/subject.h"

#include <utility>

void Subject::onRequest(quint16 code, RequestHandler handler) {
    requests_.append({code, std::move(handler)});
}
