#include <QImage>
#include <QPainter>

#include "cloud/json_input.h"
#include "fuzz_application.h"
#include "ui/script_handler.h"
#include "ui/text_fit.h"

namespace {

constexpr char kList[] = R"({"list":[{"title":"a","path":"/script.json"}]})";
constexpr int kMostDrawn = 4;

/// Draws the texts of a script as screens do.
void draw(const ScriptHandler& scripts) {
    constexpr TextFit::Rule kRules[] = {TextFit::kTitle, TextFit::kWideTile, TextFit::kName,
                                        TextFit::kConfirmation};
    static QImage canvas(240, 96, QImage::Format_RGB32);
    QPainter painter(&canvas);
    for (int i = 0; i < kMostDrawn; ++i) {
        const QString key = QString::number(i);
        const ScriptHandler::Script text = scripts.getScript(key);
        demand(text.script.isEmpty() || !scripts.readScript(key).isUndefined());
        TextFit::draw(&painter, canvas.rect(), Qt::AlignCenter, text, kRules[i], QFont::Normal,
                      0xFFFFFFFF);
        TextFit::width(text, kRules[i], QFont::Bold);
    }
}

}  // namespace

// What a script holds whose keys are "0", "1" and so on; with a first byte above 127 that of the
// list of languages.
void take(std::uint8_t first, const QByteArray& rest) {
    static const OffscreenApplication application;
    static const FuzzRoot root;
    const bool list = first > 127;
    // Qt's parser loses memory over a key that comes twice. These files come with the terminal and
    // are read when the language changes, so that is left to Qt.
    if (!readJsonObject(rest))
        return;
    root.write(root.path("/list.json"), list ? rest : QByteArray(kList));
    root.write(root.path("/script.json"), list ? QByteArray() : rest);
    ScriptHandler scripts(nullptr, QStringLiteral("/list.json"));
    const QStringList titles = scripts.getLanguageList();
    for (const QString& title : titles)
        demand(scripts.setScript(title) == 0);
    draw(scripts);
}
