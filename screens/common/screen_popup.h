#pragma once

#include <QVector>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "ui/dialog_form.h"

class WaitForm;

/// One of the texts that a screen says in a dialog, by number. A screen lists its own as a
/// constexpr array.
struct ScreenText {
    enum Kind : std::uint8_t {
        Error,  ///< a popup, with the sound of an error
        Info,
        Pass,
        Warning,
        Question,  ///< OK or Cancel
        Danger,    ///< the same; OK destroys something
        Grave,     ///< the same; it destroys so much that OK waits until that has been read
        Wait,      ///< has no button
    };

    int number;
    const char* key;  ///< script key; a "%1" in the text of a wait is the percentage
    Kind kind;
    const char* secondKey = nullptr;  ///< of the line below
    const char* okKey = nullptr;      ///< of another word than OK, if any
    const char* cancelKey = nullptr;
};

/// What one screen says in front of itself: popups, questions and waits of its tables. Each of the
/// three is numbered on its own, and a number without a text shows nothing, as the result tells. A
/// new one takes the place of the one of its kind before, and a popup or question ends a wait.
class ScreenPopup {
 public:
    static constexpr int kSeconds = 5;

    using Answer = std::function<void()>;

    /// @p screen owns the dialogs, which are made when they are first needed.
    explicit ScreenPopup(QWidget* screen) : screen_(screen) {}
    template <std::size_t count>
    ScreenPopup(QWidget* screen, const ScreenText (&texts)[count]) : screen_(screen) {
        add(texts);
    }

    /// @p texts must stay. Of two with one number that of the later table counts, so that a screen
    /// can say what its base says in words of its own.
    template <std::size_t count>
    void add(const ScreenText (&texts)[count]) {
        tables_.append(Table{texts, texts + count});
    }

    /// A popup, which has one button and closes after @p seconds by itself; 0: it does not.
    /// @p second takes the place of the text's own second line.
    bool show(int number, int seconds = kSeconds, const QString& second = QString());
    /// The same; @p closed is called when it has been closed by a touch or by its time, not when
    /// something else takes its place or the screen goes.
    bool showThen(int number, const Answer& closed, int seconds = kSeconds,
                  const QString& second = QString());
    /// Asks; @p declined is called when it is closed without OK, which it does by itself after
    /// @p seconds unless they are 0. @p second as for show().
    bool ask(int number, const Answer& agreed, const Answer& declined = Answer(),
             const QString& second = QString(), int seconds = 0);
    /// Stays until endWait(), or until something else is shown. From 0 @p percent on there is a
    /// progress bar, with the number below it unless the text tells it.
    bool wait(int number, int percent = -1);
    void endWait();
    /// Whether there is a popup, be it covered by something else.
    bool isOpen() const;
    /// Takes the popup back.
    void close();

 private:
    struct Table {
        const ScreenText* begin;
        const ScreenText* end;
    };

    const ScreenText* find(int number, bool (*isWanted)(ScreenText::Kind)) const;
    void present(DialogForm* dialog, const ScreenText& text, const QString& second);

    QWidget* const screen_;
    QVector<Table> tables_;
    DialogForm* popup_ = nullptr;
    DialogForm* question_ = nullptr;
    WaitForm* wait_ = nullptr;
    Answer closed_;
    Answer agreed_;
    Answer declined_;
};
