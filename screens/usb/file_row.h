#pragma once

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// A file or folder of a list; a folder leads into itself, a file can be the chosen one. Its name
/// comes from outside and is shown as visible() gives it, on one line.
class FileRow : public WidgetButton {
    Q_OBJECT

 public:
    FileRow(const QString& name, bool folder, QWidget* parent);

    /// @p name with a sign in place of every character without a shape of its own.
    static QString visible(const QString& name);

    const QString& name() const { return name_; }
    bool isFolder() const { return folder_; }

    QSize sizeHint() const override { return {448, 76}; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    const QString name_;
    const bool folder_;
    ScriptText shown_;
};
