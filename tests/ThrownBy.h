// The text of what an operation throws, for every folder's tests.
#pragma once

#include <memory>
#include <string>

#include "Exception.h"

namespace vandrelle {

// "Family: message" of what `action` throws, "" if it doesn't. The throw runs no
// destructors: what `action` allocates must live outside of it.
template <typename Action>
std::string thrownBy(const Action& action) {
  ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    action();
    return "";
  }
  environment.restore_env();
  const std::unique_ptr<Exception> caught(ExceptionManager::instance()->pop());
  return std::string(caught->name()) + ": " + caught->message();
}

}  // namespace vandrelle
