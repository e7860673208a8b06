#pragma once

#include <future>
#include <thread>

namespace vantrel {

/// Reads on a thread of its own what the system says of its fonts, which text waits for otherwise,
/// and lists them for the toolkit from when `application` is there; who asks for one meanwhile
/// waits. To be called before the QApplication is made, which asks for no fonts while it connects
/// to the display, and to be joined before that ends. Without a thread, or where the toolkit reads
/// fonts in another way, there is nothing to join.
[[nodiscard]] std::jthread readFontsAhead(std::future<void> application);

}  // namespace vantrel
