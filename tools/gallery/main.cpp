// Renders every screen of the terminal, and what else can be seen on it, in each language, to
// DIR/<language>/<number>-<title>[-<state>].png: zel-gallery DIR. What they look like is noted in
// DIR/looks.txt, which the tests compare with tools/gallery/looks.txt.

#include <QApplication>
#include <QDir>

#include "tools/gallery/gallery_states.h"
#include "tools/gallery/looks.h"
#include "tools/gallery/stage.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2) {
        qCritical("usage: zel-gallery DIR");
        return 2;
    }
    const QDir target(QFile::decodeName(argv[1]));
    Stage stage;
    Looks looks;
    const QStringList languages = stage.languages();
    for (int language = 0; language < languages.size(); ++language) {
        stage.restart(language);
        const QDir folder(target.filePath(languages.at(language)));
        folder.mkpath(QStringLiteral("."));
        const QVector<GalleryState> states = galleryStates(stage.window());
        for (const GalleryState& state : states) {
            state.show(stage);
            const QString file = folder.filePath(state.file + QStringLiteral(".png"));
            looks.add(state.file, stage);
            if (!stage.picture().save(file)) {
                qCritical("cannot write %s", qUtf8Printable(file));
                return 1;
            }
        }
    }
    QFile noted(target.filePath(QStringLiteral("looks.txt")));
    if (!noted.open(QIODevice::WriteOnly) || noted.write(looks.text()) < 0) {
        qCritical("cannot write %s", qUtf8Printable(noted.fileName()));
        return 1;
    }
    return 0;
}
