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
            "|Registered|NoRegistered)");
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
        QTest::addColumn<QString>("file");
        for (const char* language : {"korean", "english", "japanese"})
            QTest::newRow(language) << QStringLiteral(ZEL_STAGED_ROOT "/zel1/script/%1.json")
                                           .arg(QLatin1String(language));
    }

    void everyLanguageHasWhatIsAskedFor() {
        QFETCH(QString, file);
        QFile script(file);
        QVERIFY(script.open(QIODevice::ReadOnly));
        const QJsonObject entries = QJsonDocument::fromJson(script.readAll())
                                        .object()
                                        .value(QStringLiteral("Scripts"))
                                        .toObject();
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

 private:
    QSet<QString> asked;
};

QTEST_APPLESS_MAIN(ScriptKeysTest)
#include "script_keys_test.moc"
