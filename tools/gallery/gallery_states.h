#pragma once

#include <QString>
#include <QVector>

class MainWindow;
class Stage;

/// One picture of the gallery.
struct GalleryState {
    QString file;   ///< "06-networkMenuWindow" or "06-networkMenuWindow-state"; no two are the same
    QString title;  ///< the screen's in the registry
    void (*arrange)(Stage& stage);  ///< null for the screen as it comes up

    /// Brings it about, whatever there was before.
    void show(Stage& stage) const;
};

/// Every registered screen in the registry's order, each followed by what else is to be seen of it.
QVector<GalleryState> galleryStates(const MainWindow& window);
