#include <QFontMetrics>
#include <QLabel>
#include <QtTest>

#include "base/device_paths.h"
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
        QCOMPARE(handler.getLanguageList(),
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a"),
                              QStringLiteral("gone"), QString()}));
        QVERIFY(handler.getScript(QStringLiteral("Key_One")).script.isEmpty());

        QCOMPARE(handler.setScript(QStringLiteral("a")), 0);
        const ScriptHandler::Script one = handler.getScript(QStringLiteral("Key_One"));
        QCOMPARE(one.type, QStringLiteral("t"));
        QCOMPARE(one.size, 25.9F);
        QCOMPARE(one.height, 120.0F);
        QCOMPARE(one.letter, -1.3F);
        QCOMPARE(one.script, QStringLiteral("eins<br>zwei"));
        QCOMPARE(one.fontFamily, QStringLiteral("Family A"));
        QCOMPARE(handler.getScript(QStringLiteral("Key_NoLetter")).letter, 0.0F);
        QCOMPARE(handler.getScript(QStringLiteral("Key_NoLetter")).size, 20.0F);
        const ScriptHandler::Script missing = handler.getScript(QStringLiteral("Key_Two"));
        QVERIFY(missing.script.isEmpty() && missing.size == 0 && missing.height == 0);
        QCOMPARE(missing.fontFamily, QStringLiteral("Family A"));
        QVERIFY(handler.readScript(QStringLiteral("Key_Two")).isUndefined());
        QVERIFY(handler.readScript(QStringLiteral("Key_One")).isObject());

        QCOMPARE(handler.setScript(QStringLiteral("unknown")), -1);
        QCOMPARE(handler.getSelectedLanguage(), QStringLiteral("A"));
        QCOMPARE(handler.setScript(QStringLiteral("b")), 0);
        QCOMPARE(handler.getScript(QStringLiteral("Key_One")).size, 0.0F);
        QCOMPARE(handler.getFontFamily(), QStringLiteral("Family B"));
        QCOMPARE(handler.setScript(QStringLiteral("gone")), 0);
        QVERIFY(handler.getSelectedLanguage().isEmpty());
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
        ScriptHandler::Script text;
        text.size = 25.9F;
        text.height = 125.5F;
        text.letter = -1.5F;
        text.script = QStringLiteral("<b>%1</b> 100%");
        text.fontFamily = QStringLiteral("Noto Sans CJK KR");
        Styler::setText(&label, text);
        QCOMPARE(label.text(), QStringLiteral("<html><head/><body style=' line-height:125.5%;'>"
                                              "<b>%1</b> 100%</body></html>"));
        QCOMPARE(label.font().pixelSize(), 25);
        QCOMPARE(label.font().letterSpacing(), -1.5);
        QCOMPARE(label.font().letterSpacingType(), QFont::AbsoluteSpacing);
        QCOMPARE(label.font().family(), text.fontFamily);

        Styler::setText(&label, ss{30, 90, -1, nullptr});
        QCOMPARE(label.text(),
                 QStringLiteral("<html><head/><body style=' line-height:90%;'></body></html>"));
        const QString returned = Styler::getText(&label, ss{31, 90, 0, "\xea\xb0\x80"});
        QVERIFY(returned.contains(QStringLiteral("가")) &&
                !label.text().contains(QStringLiteral("가")));
        QCOMPARE(label.font().pixelSize(), 31);
        QCOMPARE(StylerFont(QStringLiteral("88%")).getHtml(QStringLiteral("a")),
                 QStringLiteral("<p style='; line-height : 88%;'>a</p>"));
    }

    void styleSheetLines() {
        QLabel label;
        label.setStyleSheet(QStringLiteral("color:#fff;\n background : red;\ncolor : blue;"));
        Styler::setStyleSheet(&label, QStringLiteral("color"), QStringLiteral("#000"), true);
        QCOMPARE(label.styleSheet(),
                 QStringLiteral("color : #000;\n background : red;\ncolor : #000;\n"));
        Styler::setStyleSheet(&label, QStringLiteral("border"), QStringLiteral("0"), false);
        QCOMPARE(label.styleSheet(),
                 QStringLiteral("color : #000;\n background : red;\ncolor : #000;\n\n"));
        Styler::setStyleSheet(&label, QStringLiteral("border"), QStringLiteral("0"), true);
        QVERIFY(label.styleSheet().endsWith(QStringLiteral("\n\n\nborder : 0;")));
    }

    void aThemeChangesOnlyWhatItMay() {
        const QString path = root.path("/theme.json");
        const QRgb own[] = {Theme::kStrong, Theme::kBar, Theme::kRow, Theme::kList};
        QByteArray theme(
            "{'accent':'#FFb84d', 'veil':'#80102030', 'onAccent':7, 'bar':'red',"
            " 'strong':'#80ffffff', 'row':'#12345g', 'x':'#000000'}");
        root.write("/theme.json", theme.replace('\'', '"'));
        for (const char* wrong :
             {"7.*onAccent", "#80ffffff.*strong", "red.*bar", "#12345g.*row", " x$"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QLatin1String(wrong)));
        Theme::load(path);
        QCOMPARE(Theme::kAccent, 0xffffb84d);
        QCOMPARE(Theme::kVeil, 0x80102030);
        const QRgb kept[] = {Theme::kStrong, Theme::kBar, Theme::kRow, Theme::kList};
        QVERIFY(std::equal(std::begin(own), std::end(own), std::begin(kept)));
        for (const QByteArray& broken :
             {QByteArray("[1]"), QByteArray(50 * 1024 * 1024, ' '), QByteArray(10000, '[')}) {
            root.write("/theme.json", broken);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("theme.json")));
            Theme::load(path);
            QCOMPARE(Theme::kAccent, 0xff5effd7);
        }
    }

    void commandsUnderARoot() {
        QCOMPARE(
            DevicePaths::shellCommand(QStringLiteral("ln -s /zel1/image/img/* /usr/img/ ")),
            QStringLiteral("ln -s '%1'/zel1/image/img/* '%1'/usr/img/ ").arg(DevicePaths::root()));
    }

 private:
    DeviceRoot root;
};

QTEST_MAIN(ScriptHandlerTest)
#include "script_handler_test.moc"
