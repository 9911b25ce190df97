#include "app/languages.h"

#include <QApplication>
#include <QFontDatabase>

#include "app/fonts.h"
#include "ui/theme.h"

namespace {

constexpr int kJapanese = 2;    // has display fonts of its own
constexpr int kUsualSize = 24;  // pixels

}  // namespace

Languages::Languages(QObject* parent) : QObject(parent) {
    Fonts::installBase();
    scripts_ = new ScriptHandler(this, QStringLiteral("/zel1/script_list.json"));
    // A list may mark its standard language with an empty title; ours does not.
    if (scripts_->setScript(QString()) != 0)
        scripts_->setScript(titles().value(0));
    useFamily();
}

void Languages::apply(int number) {
    if (number == number_ || !exists(number))
        return;
    if (number == kJapanese && !japaneseFonts_)
        Fonts::installJapanese();
    japaneseFonts_ = japaneseFonts_ || number == kJapanese;
    load(number);
}

void Languages::change(int number) {
    if (!exists(number))
        return;
    if (number == kJapanese) {
        QFontDatabase::removeAllApplicationFonts();
        Fonts::installJapanese();
    } else {
        Fonts::removeJapanese();
        QFontDatabase::removeAllApplicationFonts();
    }
    // The base family serves every language; without it the panel would have no font at all.
    Fonts::registerBase();
    japaneseFonts_ = number == kJapanese;
    load(number);
}

void Languages::load(int number) {
    number_ = number;
    scripts_->setScript(titles().at(number));
    useFamily();
    emit changed();
}

// Qt lays texts out in the application's font before they get their own; another family than
// theirs would be loaded just for that.
void Languages::useFamily() {
    QApplication::setFont(Theme::font(scripts_->getFontFamily(), kUsualSize));
}
