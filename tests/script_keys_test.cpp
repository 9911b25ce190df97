#include <QDirIterator>
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
        const QRegularExpression literal(QStringLiteral("(?<!=)\"%1\"|notr=\"true\">%1<").arg(key));
        for (const char* folder : {"app", "cloud", "screens", "ui"}) {
            QDirIterator files(
                QStringLiteral(ZEL_SOURCE_DIR "/") + QLatin1String(folder),
                {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")},
                QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                auto matches = literal.globalMatch(QString::fromUtf8(read(files.next())));
                while (matches.hasNext())
                    asked.insert(matches.next().capturedTexts().last());
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
        const QJsonObject first = scripts(QStringLiteral("korean"));
        const QJsonObject entries = scripts(language);
        const QRegularExpression otherMarkup(QStringLiteral("<(?!br>)|  |&|\\t|\\n"));
        QStringList wrong;
        for (const QString& key : asked.values() + entries.keys()) {
            const QJsonValue entry = entries[key];
            const QString text = entry[QLatin1String("Script")].toString();
            const QStringList shape = shapeOf(text);
            const QStringList like = shapeOf(first[key][QLatin1String("Script")].toString());
            const auto check = [&](bool right, const char* fault) {
                if (!right)
                    wrong.append(
                        QStringLiteral("%1 %2 \"%3\"").arg(key, QLatin1String(fault), text));
            };
            check(asked.contains(key), "nobody asks for it");
            check(!text.trimmed().isEmpty(), "missing");
            check(entry[QLatin1String("Type")] == QLatin1String("Format") ||
                      entry[QLatin1String("Size")].toDouble() >= 18,
                  "too small to read");
            // What is put into a text, or what the text is joined with, is the same everywhere.
            check(shape == like, "of another shape than the first language's");
            check(!text.contains(otherMarkup), "other markup");
        }
        wrong.sort();
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

 private:
    static QByteArray read(const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(path));
        return file.readAll();
    }
    static QJsonObject scripts(const QString& language) {
        // What the example of a brand brings is as complete as ours.
        const QString example =
            QStringLiteral(ZEL_SOURCE_DIR "/examples/branding/script/%1.json").arg(language);
        const QString own = QStringLiteral(ZEL_STAGED_ROOT "/zel1/script/%1.json").arg(language);
        return QJsonDocument::fromJson(
                   read(QFile::exists(example) ? example : own))[QLatin1String("Scripts")]
            .toObject();
    }

    /// The blanks at both ends, the placeholders in their numbers' order, whether it asks.
    static QStringList shapeOf(const QString& text) {
        static const QRegularExpression part(QStringLiteral("%\\d+%?|\\s+$|[?？]$"));
        QStringList shape(QString::number(text.indexOf(QRegularExpression(QStringLiteral("\\S")))));
        for (auto match = part.globalMatch(text); match.hasNext();)
            shape.append(match.next().captured().replace(QChar(0xff1f), QLatin1Char('?')));
        shape.sort();
        return shape;
    }

    QSet<QString> asked;
};

QTEST_APPLESS_MAIN(ScriptKeysTest)
#include "script_keys_test.moc"
