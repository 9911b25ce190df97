#include "sim/controller/subject.h"

void Subject::onRequest(quint16 code, const RequestHandler& handler) {
    requests_.append({code, handler});
}
