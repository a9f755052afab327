#include "thrown.h"

#include <exception>
#include <new>
#include <string>

namespace quillon::cli {

Outcome thrownOutcome() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return "There is not enough memory.";
  } catch (const std::exception& error) {
    return std::string(error.what()) + ".";
  } catch (...) {
    return "The operation failed.";
  }
}

}  // namespace quillon::cli
