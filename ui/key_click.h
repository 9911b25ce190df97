#pragma once

#include <functional>

/// The click that every touched button makes. The buttons do not know who makes the sound.
/// GUI thread only.
namespace KeyClick {

/// Who is told about each touch; an empty function ends it.
void setHandler(std::function<void()> handler);

/// Reports one touch.
void send();

}  // namespace KeyClick
