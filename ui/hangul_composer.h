#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

struct _HangulInputContext;

/// Composes Hangul syllables from the keys of the two-set layout. A key is the ASCII letter that
/// lies at its place on a Latin keyboard, upper case with shift.
class HangulComposer {
 public:
    HangulComposer();

    /// The letter on the key @p key, empty for a key that has none.
    static QString letter(char key);

    /// Types @p key. Returns the text that it completes, which is no longer part of preedit().
    QString type(char key);
    /// As if the last call had not been, when that was type().
    void undo();
    /// Takes the last letter of the syllable back; false when there is none.
    bool backspace();
    /// Ends the syllable and returns it.
    QString flush();

    /// The syllable being composed.
    QString preedit() const;

 private:
    struct Deleter {
        void operator()(_HangulInputContext* context) const;
    };

    std::unique_ptr<_HangulInputContext, Deleter> context_;
    QByteArray keys_;    // that preedit() was made with
    QByteArray before_;  // ... before the last type()
};
