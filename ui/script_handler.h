#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

/// The language scripts: every text that a screen shows, by key, with the typography to draw it
/// with. Keeps the list of languages and the script of the language in force. GUI thread only.
///
/// Nothing here fails loudly: a list or script that cannot be read leaves the texts empty and one
/// line in the log.
class ScriptHandler : public QObject {
    Q_OBJECT

 public:
    /// One entry of a script.
    struct Script {
        QString type;
        float size = 0;    ///< pixels
        float height = 0;  ///< line height in percent
        float letter = 0;  ///< letter spacing in pixels, may be negative
        QString script;    ///< the text; may hold rich-text markup
        QString fontFamily;
    };

    /// @p listPath is the language list's path on the device.
    ScriptHandler(QObject* parent, QString listPath);

    /// Reads the language list. Always 0.
    int initScriptFile(QString path);
    /// Loads the script of the first language titled @p title. 0 when there is one, even if its
    /// file cannot be read (every text is empty then); -1 when there is none, and the script in
    /// force stays.
    int setScript(QString title);

    /// The entry of @p key; an empty one with the language's font family when there is none.
    Script getScript(const QString& key) const;
    /// The entry as it stands in the file, which is read for it; undefined when there is none.
    QJsonValue readScript(const QString& key) const;

    /// The titles of the languages, in the order of their numbers.
    QStringList getLanguageList() const;
    QString getSelectedLanguage() const { return language_; }
    QString getFontFamily() const { return fontFamily_; }
    /// Always -1: the settings record holds the language's number, not the handler.
    int getSelectedLanguageIndex() const { return selectedIndex_; }

    /// Grows with every script loaded; screens compare it to see whether their texts are old.
    int revision() const { return revision_; }

 private:
    const int selectedIndex_ = -1;
    int revision_ = 0;
    QJsonObject list_;
    QJsonArray languages_;
    QString path_;  // of the script in force, on the device
    QString language_;
    QString fontFamily_;
    QHash<QString, Script> entries_;
};
