#include "base/failure.h"

#include <algorithm>
#include <new>

namespace vantrel {

std::string userMessage(const std::exception_ptr& error) {
  std::string line;
  try {
    if (error) std::rethrow_exception(error);
  } catch (const std::bad_alloc&) {
    line = "There is not enough memory.";
  } catch (const std::exception& exception) {
    line = exception.what();
  } catch (...) {
    line = "An unknown error occurred.";
  }
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line;
}

}  // namespace vantrel
