#include "Exception.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

namespace vandrelle {

namespace {

constexpr int kThrowJumpValue = 17;
constexpr std::size_t kMessageBytes = 512;

char messageBuffer[kMessageBytes];

// A throw leaves the objects of the frames it jumps over on the heap, by
// design. Once one has happened, a leak report at exit would only list those.
[[maybe_unused]] bool somethingWasThrown = false;

}  // namespace

FixedTextStream ExceptionManager::errstream(messageBuffer, kMessageBytes);

Exception::Exception(const char* message) {
  if (message == nullptr) message = "";
  const std::size_t bytes = std::strlen(message) + 1;
  msg_ = new char[bytes];
  std::memcpy(msg_, message, bytes);
}

Exception::~Exception() { delete[] msg_; }

bool Exception::isA(const char* classname) const { return sameName(name(), classname); }

Exception* Exception::place(const char* file, int line) {
  file_ = file;
  line_ = line;
  return this;
}

void Exception::print(std::ostream& os) const {
  const char* where = file();
  os << name() << ": " << msg_ << " [\"" << (where != nullptr ? where : "") << "\", line " << line()
     << ']';
}

std::ostream& operator<<(std::ostream& os, const Exception* exception) {
  exception->print(os);
  return os;
}

ExceptionManager* ExceptionManager::instance() {
  static ExceptionManager manager;
  return &manager;
}

ExceptionManager::~ExceptionManager() {
  while (head_ != nullptr) delete pop();
}

bool ExceptionManager::exception(const char* type) const {
  return head_ != nullptr && head_->isA(type);
}

Exception* ExceptionManager::pop() {
  last_ = head_;
  head_ = head_->next_;
  return last_;
}

void ExceptionManager::push(Exception* exception) {
  exception->next_ = head_;
  head_ = exception;
}

void ExceptionManager::do_throw(Exception* exception) {
  push(exception);
  do_throw();
}

void ExceptionManager::do_throw() {
  somethingWasThrown = true;
  throw_break();
  if (environment_ == nullptr) default_catch_handler();
  longjmp(*environment_, kThrowJumpValue);
}

void ExceptionManager::default_catch_handler() {
  std::cerr << "Uncaught exception: ";
  if (head_ != nullptr) {
    std::cerr << head_ << '\n';
  } else {
    std::cerr << "NULL\n";
  }
  std::cerr << "Exiting.\n";
  std::exit(-1);
}

// The empty instruction keeps the calls, where nothing would be left to stop at.
extern "C" [[gnu::noinline]] void throw_break() { asm volatile(""); }

ExceptionEnvironment::ExceptionEnvironment()
    : last_env_(ExceptionManager::instance()->environment()) {
  ExceptionManager::instance()->environment(&env_);
}

void ExceptionEnvironment::restore_env() { ExceptionManager::instance()->environment(last_env_); }

}  // namespace vandrelle

#if defined(__SANITIZE_ADDRESS__)
extern "C" int __lsan_is_turned_off() { return vandrelle::somethingWasThrown ? 1 : 0; }
#endif
