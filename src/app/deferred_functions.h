#pragma once

namespace vantrel {

/// Loads the libraries whose functions stand-ins wait for (vantrel_defer_libraries), so that the
/// first call of one does not have to. Blocking, any thread. Ends the program if one is missing.
void loadDeferredFunctions();

}  // namespace vantrel
