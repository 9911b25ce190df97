#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// The scripts hold exactly the keys that the program asks for, in every language.
class ScriptKeysTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        const QString key = QStringLiteral(
            "((?:ListItem|Button|Info|TopDepthTitle|Dialog|Toggle|TopMenu|Arg|Error|Popup)_\\w+"
            "|Registered|NoRegistered|SelectMode)");
        // A literal of its own in the sources, a string of its own in the forms.
        const QRegularExpression literal(QStringLiteral("\"%1\"").arg(key));
        const QRegularExpression property(QStringLiteral("notr=\"true\">%1<").arg(key));
        for (const char* folder : {"app", "cloud", "screens", "ui"}) {
            QDirIterator files(
                QStringLiteral(ZEL_SOURCE_DIR "/") + QLatin1String(folder),
                {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")},
                QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                QFile file(files.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                const QRegularExpression& pattern =
                    file.fileName().endsWith(QLatin1String(".ui")) ? property : literal;
                auto matches = pattern.globalMatch(QString::fromUtf8(file.readAll()));
                while (matches.hasNext())
                    asked.insert(matches.next().captured(1));
            }
        }
        QVERIFY(asked.size() > 5);
    }

    void everyLanguageHasWhatIsAskedFor_data() {
        QTest::addColumn<QString>("language");
        for (const char* language : {"korean", "english", "japanese", "german"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }

    void everyLanguageHasWhatIsAskedFor() {
        QFETCH(QString, language);
        const QJsonObject entries = scripts(language);
        QStringList wrong;
        for (const QString& key : asked) {
            const QJsonObject entry = entries.value(key).toObject();
            if (entry.value(QStringLiteral("Script")).toString().trimmed().isEmpty())
                wrong.append(QStringLiteral("missing ") + key);
            else if (entry.value(QStringLiteral("Type")).toString() != QLatin1String("Format") &&
                     entry.value(QStringLiteral("Size")).toDouble() < 18)
                wrong.append(QStringLiteral("too small to read ") + key);
        }
        for (const QString& key : entries.keys()) {
            if (!asked.contains(key))
                wrong.append(QStringLiteral("nobody asks for ") + key);
        }
        wrong.sort();
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    /// What is put into a text, or what the text is joined with, is the same in every language.
    void translationsHaveTheSameShape_data() { everyLanguageHasWhatIsAskedFor_data(); }

    void translationsHaveTheSameShape() {
        QFETCH(QString, language);
        const QJsonObject entries = scripts(language);
        const QJsonObject first = scripts(QStringLiteral("korean"));
        const auto text = [](const QJsonObject& from, const QString& key) {
            return from.value(key).toObject().value(QStringLiteral("Script")).toString();
        };
        const QRegularExpression otherMarkup(QStringLiteral("<(?!br>)|  |&|\\t|\\n"));
        QStringList wrong;
        for (const QString& key : entries.keys()) {
            const QString shown = text(entries, key);
            const QString like = text(first, key);
            if (shapeOf(shown) != shapeOf(like))
                wrong.append(QStringLiteral("%1: \"%2\" is not of the shape of \"%3\"")
                                 .arg(key, shown, like));
            if (shown.contains(otherMarkup))
                wrong.append(QStringLiteral("%1: \"%2\"").arg(key, shown));
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

 private:
    static QJsonObject scripts(const QString& language) {
        // What the example of a brand brings is as complete as ours.
        QFile file(QStringLiteral(ZEL_STAGED_ROOT "/zel1/script/%1.json").arg(language));
        QFile example(
            QStringLiteral(ZEL_SOURCE_DIR "/examples/branding/script/%1.json").arg(language));
        if (example.exists())
            file.setFileName(example.fileName());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no script of %s", qPrintable(language));
        return QJsonDocument::fromJson(file.readAll())
            .object()
            .value(QStringLiteral("Scripts"))
            .toObject();
    }

    /// The blanks at both ends, the placeholders in their numbers' order, whether it asks.
    static QStringList shapeOf(const QString& text) {
        static const QRegularExpression ends(QStringLiteral("^\\s*|\\s*$"));
        static const QRegularExpression placeholder(QStringLiteral("%\\d+%?"));
        QStringList placeholders;
        for (auto match = placeholder.globalMatch(text); match.hasNext();)
            placeholders.append(match.next().captured());
        placeholders.sort();
        QStringList shape = placeholders;
        for (auto match = ends.globalMatch(text); match.hasNext();)
            shape.append(match.next().captured());
        shape.append(text.contains(QRegularExpression(QStringLiteral("[?？]$")))
                         ? QStringLiteral("?")
                         : QString());
        return shape;
    }

    QSet<QString> asked;
};

QTEST_APPLESS_MAIN(ScriptKeysTest)
#include "script_keys_test.moc"
