#include <QTextCodec>
#include <cstring>

#include "screens/facesearch/dialog_fsv_recognized.h"
#include "tools/gallery/area_states.h"
#include "tools/gallery/stage.h"

namespace {

template <std::size_t size>
void set(char (&field)[size], const char* text) {
    const QByteArray bytes =
        QTextCodec::codecForName("EUC-KR")->fromUnicode(QString::fromUtf8(text));
    std::memcpy(field, bytes.constData(), qMin(bytes.size(), static_cast<int>(size)));
}

/// Somebody with @p text as every text.
FaceInfoRecord everywhere(const char* text) {
    FaceInfoRecord face{};
    set(face.personId, "10000001");
    set(face.name, text);
    set(face.position, text);
    set(face.department1, text);
    set(face.department2, text);
    set(face.department3, text);
    set(face.department4, text);
    face.confidence = 255;
    return face;
}

void tell(Stage& stage, const FaceInfoRecord& face) {
    stage.add<DialogFsvRecognized>()->tell(face);
    stage.showAdded();
}

void known(Stage& stage) {
    FaceInfoRecord face{};
    set(face.personId, "10000001");
    set(face.name, "홍길동");
    set(face.position, "부장");
    set(face.department1, "개발본부");
    set(face.department2, "단말기팀");
    face.confidence = 95;
    tell(stage, face);
}

constexpr AreaState kStates[] = {
    {"liveWindow", "face-search", known},
    {"liveWindow", "face-search-longest",
     [](Stage& stage) { tell(stage, everywhere("김수한무거북이와두")); }},
    {"liveWindow", "face-search-widest",
     [](Stage& stage) { tell(stage, everywhere("Research Engineering")); }},
    {"liveWindow", "face-search-nobody", [](Stage& stage) { tell(stage, {}); }},
};

}  // namespace

AreaStates facesearchStates() {
    return kStates;
}
