#include <QApplication>
#include <QFontDatabase>
#include <QMainWindow>

/// What any Qt Widgets program with the terminal's fonts costs: an empty window of its size.
/// The arguments are the font files.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList fonts = QCoreApplication::arguments().mid(1);
    for (const QString& font : fonts)
        QFontDatabase::addApplicationFont(font);
    QMainWindow window;
    window.setFixedSize(480, 800);
    window.show();
    return QApplication::exec();
}
