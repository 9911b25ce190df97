#pragma once

class QWidget;
class WindowRegistry;

/// Creates every screen with @p parent and appends it to @p registry, in registry order. Defined
/// beside the screens, which the shell itself does not know.
void createScreens(QWidget* parent, WindowRegistry& registry);
