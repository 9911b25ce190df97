#include "ui/hangul_composer.h"

#include <hangul.h>

namespace {

constexpr char kTwoSet[] = "2";

QString toText(const ucschar* characters) {
    return QString::fromUcs4(characters);
}

}  // namespace

void HangulComposer::Deleter::operator()(_HangulInputContext* context) const {
    hangul_ic_delete(context);
}

HangulComposer::HangulComposer() : context_(hangul_ic_new(kTwoSet)) {}

QString HangulComposer::letter(char key) {
    HangulComposer composer;
    composer.type(key);
    return composer.preedit();
}

QString HangulComposer::type(char key) {
    before_ = keys_;
    hangul_ic_process(context_.get(), key);
    QString completed = toText(hangul_ic_get_commit_string(context_.get()));
    keys_ += key;
    if (!completed.isEmpty()) {
        // The new syllable starts with this key, or with the final consonant that this vowel has
        // drawn over from the completed one.
        const QString rest = preedit();
        const bool syllable = rest.size() == 1 && hangul_is_syllable(rest.at(0).unicode());
        keys_ = keys_.right(rest.isEmpty() ? 0 : syllable ? 2 : 1);
    }
    return completed;
}

void HangulComposer::undo() {
    hangul_ic_reset(context_.get());
    for (const char key : qAsConst(before_))
        hangul_ic_process(context_.get(), key);
    keys_ = before_;
}

bool HangulComposer::backspace() {
    keys_.chop(1);
    return hangul_ic_backspace(context_.get());
}

QString HangulComposer::flush() {
    keys_.clear();
    return toText(hangul_ic_flush(context_.get()));
}

QString HangulComposer::preedit() const {
    return toText(hangul_ic_get_preedit_string(context_.get()));
}
