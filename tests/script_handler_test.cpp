#include <QLabel>
#include <QtTest>

#include "sim/device_root.h"
#include "ui/script_handler.h"
#include "ui/styler.h"
#include "ui/theme.h"

namespace {

QByteArray script(const char* language, const char* entries) {
    return QByteArray("{\"Language\":\"") + language + "\",\"FontFamily\":\"Family " + language +
           "\",\"Scripts\":{" + entries + "}}";
}

const QString kList = QStringLiteral("/zel1/script_list.json");

}  // namespace

class ScriptHandlerTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        root.write("/a.json",
                   script("A", R"("Key_One":{"Type":"t","Size":25.9,"Height":120,)"
                               R"("Letter":-1.3,"Script":"eins<br>zwei"},)"
                               R"("Key_NoLetter":{"Size":20,"Height":125.5,"Script":"x"})") +
                       QByteArray("\0 rest", 6));
        root.write("/b.json", script("B", R"("Key_One":"not an object")"));
        root.write("/zel1/script_list.json",
                   R"({"list":[{"title":"a","path":"/a.json"},{"title":"b","path":"/b.json"},)"
                   R"({"title":"a","path":"/b.json"},{"title":"gone","path":"/gone.json"},7]})");
    }

    void looksUpAndKeepsWhatItHas() {
        ScriptHandler handler(nullptr, kList);
        const auto found = [&handler](const char* key) {
            const ScriptHandler::Script one = handler.getScript(QLatin1String(key));
            QString text;
            QTextStream(&text) << one.type << '|' << one.size << '|' << one.height << '|'
                               << one.letter << '|' << one.script << '|' << one.fontFamily << '|'
                               << handler.getSelectedLanguage();
            return text;
        };
        QCOMPARE(handler.getLanguageList().join(QLatin1Char('|')), QStringLiteral("a|b|a|gone|"));
        QCOMPARE(found("Key_One"), QStringLiteral("|0|0|0|||"));
        for (const char* same : {"a", "unknown"}) {
            QCOMPARE(handler.setScript(QLatin1String(same)), *same == 'a' ? 0 : -1);
            QCOMPARE(found("Key_One"), QStringLiteral("t|25.9|120|-1.3|eins<br>zwei|Family A|A"));
            QCOMPARE(found("Key_NoLetter"), QStringLiteral("|20|125.5|0|x|Family A|A"));
            QCOMPARE(found("Key_Two"), QStringLiteral("|0|0|0||Family A|A"));
        }
        QVERIFY(handler.readScript(QStringLiteral("Key_Two")).isUndefined());
        QVERIFY(handler.readScript(QStringLiteral("Key_One")).isObject());
        QCOMPARE(handler.setScript(QStringLiteral("b")), 0);
        QCOMPARE(found("Key_One"), QStringLiteral("|0|0|0||Family B|B"));
        QCOMPARE(handler.getFontFamily(), QStringLiteral("Family B"));
        QCOMPARE(handler.setScript(QStringLiteral("gone")), 0);
        QCOMPARE(found("Key_One"), QStringLiteral("|0|0|0|||"));
        QCOMPARE(handler.getSelectedLanguageIndex(), -1);
    }

    // Read as a list and as a script, each leaves the handler alive and its texts empty.
    void brokenFiles() {
        for (const QByteArray& content :
             {QByteArray(), QByteArray(R"({"list":[{"title":"x")"), QByteArray("[1,2,3]"),
              QByteArray(R"({"list":{"title":[]},"Scripts":[1]})"), QByteArray(4096, '\0'),
              QByteArray(1000000, '['), QByteArray(50 * 1024 * 1024, ' ') + "{}",
              QByteArray("{\"list\":[{\"title\":\"\xff\xfe\xc0\"}]}")}) {
            root.write("/broken.json", content);
            ScriptHandler broken(nullptr, QStringLiteral("/broken.json"));
            QVERIFY(broken.getLanguageList().size() <= 1);

            root.write("/one.json", R"({"list":[{"title":"","path":"/broken.json"}]})");
            ScriptHandler handler(nullptr, QStringLiteral("/one.json"));
            QCOMPARE(handler.setScript(QString()), 0);  // an empty title is a title
            QVERIFY(handler.getScript(QStringLiteral("Key")).script.isEmpty());
        }
    }

    void labelsTakeTheTypography() {
        QLabel label;
        ScriptHandler::Script text{{},    25.9F, 125.5F,
                                   -1.5F, {},    QStringLiteral("Noto Sans CJK KR")};
        text.script = QStringLiteral("<b>%1</b> 100%");
        Styler::setText(&label, text);
        QCOMPARE(label.text(), QStringLiteral("<html><head/><body style=' line-height:125.5%;'>"
                                              "<b>%1</b> 100%</body></html>"));
        const QFont font = label.font();
        QCOMPARE(font.pixelSize(), 25);
        QCOMPARE(font.letterSpacing(), -1.5);
        QVERIFY(font.letterSpacingType() == QFont::AbsoluteSpacing);
        QCOMPARE(font.family(), text.fontFamily);

        const QString body =
            QStringLiteral("<html><head/><body style=' line-height:90%;'>%1</body></html>");
        Styler::setText(&label, ss{30, 90, -1, nullptr});
        QCOMPARE(Styler::getText(&label, ss{31, 90, 0, "\xea\xb0\x80"}), body.arg(QChar(0xac00)));
        QCOMPARE(label.text(), body.arg(QString()));
        QCOMPARE(label.font().pixelSize(), 31);
        QCOMPARE(StylerFont(QStringLiteral("88%")).getHtml(QStringLiteral("a")),
                 QStringLiteral("<p style='; line-height : 88%;'>a</p>"));
    }

    void styleSheetLines() {
        QLabel label;
        label.setStyleSheet(QStringLiteral("color:#fff;\n background : red;\ncolor : blue;"));
        const auto set = [&label](const char* name, const char* value, bool addIfMissing) {
            Styler::setStyleSheet(&label, QLatin1String(name), QLatin1String(value), addIfMissing);
            return label.styleSheet();
        };
        const QString sheet = QStringLiteral("color : #000;\n background : red;\ncolor : #000;\n");
        QCOMPARE(set("color", "#000", true), sheet);
        QCOMPARE(set("border", "0", false), sheet + QLatin1Char('\n'));
        QCOMPARE(set("border", "0", true), sheet + QLatin1String("\n\nborder : 0;"));
    }

    void aThemeChangesOnlyWhatItMay() {
        const auto load = [this](QByteArray content, std::initializer_list<const char*> warnings) {
            root.write("/theme.json", content.replace('\'', '"'));
            for (const char* warning : warnings)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QLatin1String(warning)));
            Theme::load(root.path("/theme.json"));
        };
        const QVector<QRgb> own{Theme::kStrong, Theme::kBar, Theme::kRow, Theme::kList};
        load(
            "{'accent':'#FFb84d', 'veil':'#80102030', 'onAccent':7, 'bar':'red',"
            " 'strong':'#80ffffff', 'row':'#12345g', 'x':'#000000'}",
            {"7.*onAccent", "#80ffffff.*strong", "red.*bar", "#12345g.*row", " x$"});
        QCOMPARE(Theme::kAccent, 0xffffb84d);
        QCOMPARE(Theme::kVeil, 0x80102030);
        QCOMPARE(QVector<QRgb>({Theme::kStrong, Theme::kBar, Theme::kRow, Theme::kList}), own);
        for (const QByteArray& broken :
             {QByteArray("[1]"), QByteArray(50 * 1024 * 1024, ' '), QByteArray(10000, '[')}) {
            load(broken, {"theme.json"});
            QCOMPARE(Theme::kAccent, 0xff5effd7);
        }
    }

 private:
    DeviceRoot root;
};

QTEST_MAIN(ScriptHandlerTest)
#include "script_handler_test.moc"
