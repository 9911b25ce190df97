#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QVector>

/// Small versions of pictures that did not come with the terminal, for lists of many. They are read
/// and scaled behind the scenes, so asking for one never takes time; those asked for last come
/// first, and what has been scrolled past unread is not read at all. Holds as many as its budget
/// allows. GUI thread only.
class PictureShelf : public QObject {
    Q_OBJECT

 public:
    enum class State {
        Waiting,  ///< is being read, or soon will be
        Here,
        Broken,  ///< no picture, or none that may be shown (see Pictures::foreign())
    };

    /// Pictures are cut to the shape of @p size and no larger, in pixels; together they take at
    /// most @p budget bytes.
    PictureShelf(const QSize& size, int budget, QObject* parent);
    /// Waits for the one that is being read.
    ~PictureShelf() override;

    /// The picture @p name of @p deviceFolder. Null unless Here; while it is Waiting, arrived()
    /// follows.
    QImage picture(const QString& deviceFolder, const QString& name, State* state = nullptr);
    /// Forgets all, also what is being read, so that files are looked at anew.
    void clear();
    /// Bytes of the pictures that are held.
    int held() const { return pictures_.totalCost(); }
    /// Whether everything that was asked for has been read.
    bool isIdle() const { return !reading_ && wanted_.isEmpty(); }

 signals:
    /// One that was asked for is Here or Broken now.
    void arrived();

 private:
    struct Request {
        QString folder;
        QString name;
        bool operator==(const Request& other) const {
            return name == other.name && folder == other.folder;
        }
    };

    void readNext();
    void take(const Request& request, const QImage& picture, int round);

    const QSize size_;
    QCache<QString, QImage> pictures_;  // null ones are broken
    QVector<Request> wanted_;           // the last one is next
    Request current_;
    QThreadPool reader_;
    bool reading_ = false;
    int round_ = 0;  // since the last clear()
};
