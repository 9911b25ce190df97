#pragma once

#include <QString>

class MainWindow;

/// Brings the screen @p title up, painted, with nothing in front of it, whoever it is for.
void showScreen(MainWindow& window, const QString& title);
