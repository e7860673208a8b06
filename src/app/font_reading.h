#pragma once

#include <thread>

namespace vantrel {

/// Reads on a thread of its own what the system says of its fonts, which text waits for otherwise.
/// To be called before the QApplication is made, which asks for no fonts while it connects to the
/// display, and to be joined before the first font is asked for. Without a thread, or where the
/// toolkit reads fonts in another way, there is nothing to join.
[[nodiscard]] std::jthread readFontsAhead();

}  // namespace vantrel
