#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

class Stage;

/// What every screen and state looks like, in so few letters that the repository can keep it: a
/// line each, of its name and a sum of all that is drawn in each language. Whoever changes how
/// something looks keeps what the gallery has noted beside its pictures.
///
/// It is sums of what is drawn and where, for pixels of the same letters are not quite the same
/// each time. Where texts go depends on how wide the system's fonts are; the first line is of some
/// letters alone, so that nothing is compared where these are others.
class Looks {
 public:
    /// To be made when the application's fonts are known.
    Looks();

    /// Notes what @p stage shows, the state called @p name, in the next language.
    void add(const QString& name, Stage& stage);
    /// What is noted, as a file keeps it.
    QByteArray text() const;
    /// The states that look otherwise in @p kept, or are in one of the two only.
    QStringList changedSince(const QByteArray& kept) const;

 private:
    QMap<QString, QByteArray> sums_;  // of all languages, by state
};
