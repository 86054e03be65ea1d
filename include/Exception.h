// How failures are reported: a heap-allocated Exception is pushed on the stack
// of the one ExceptionManager, and control jumps to the innermost
// ExceptionEnvironment. The jump is a plain non-local one: it runs no
// destructors of the frames that it leaves, so nothing may rely on clean-up
// during a throw.
//
//   throwing   THROW(IO, "could not open " << path);
//   guarding   ExceptionEnvironment environment;
//              if (GUARDED(environment)) {
//                ...                                    // may throw
//              } else if (ExceptionManager::instance()->exception("IO")) {
//                environment.restore_env();
//                Exception* caught = ExceptionManager::instance()->pop();
//                ...
//              } else {
//                environment.restore_env();
//                ExceptionManager::instance()->do_throw();  // pass it on
//              }
#pragma once

#include <setjmp.h>

#include <cstddef>
#include <iosfwd>

#include "FixedTextStream.h"
#include "Hierarchy.h"

namespace vandrelle {

// One failure: a family tag (name()), a message and the place of the throw.
class Exception : public HierarchyDescriptor {
 public:
  // Copies `message`; null counts as empty.
  explicit Exception(const char* message);
  ~Exception() override;
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;

  const char* name() const override { return "Exception"; }
  bool isA(const char* classname) const override;
  virtual int line() const { return line_; }
  virtual const char* file() const { return file_; }

  // Stores where the throw stands and returns the object. `file` is not owned:
  // a literal.
  virtual Exception* place(const char* file, int line);

  // name: message ["file", line N], with no newline.
  virtual void print(std::ostream& os) const;

  const char* message() const { return msg_; }

 private:
  friend class ExceptionManager;
  const char* file_ = nullptr;
  char* msg_;
  int line_ = 0;
  Exception* next_ = nullptr;
};

std::ostream& operator<<(std::ostream& os, const Exception* exception);

using ExceptionContext = jmp_buf;

// The process-wide stack of failures and the innermost jump target.
class ExceptionManager {
 public:
  static ExceptionManager* instance();
  virtual ~ExceptionManager();

  // Is a failure waiting, of any family or of `type` or a family below it?
  bool exception() const { return head_ != nullptr; }
  bool exception(const char* type) const;

  // Takes the top off, remembers it as last() and gives it to the caller, who
  // owns it. The stack must not be empty.
  Exception* pop();
  Exception* last() const { return last_; }
  void push(Exception* exception);

  // Pushes (the first form) and jumps to the innermost environment; without one
  // ends in default_catch_handler(). The empty function throw_break is called
  // first, as a place for a debugger's breakpoint.
  [[noreturn]] void do_throw(Exception* exception);
  [[noreturn]] void do_throw();

  ExceptionContext* environment() const { return environment_; }
  void environment(ExceptionContext* context) { environment_ = context; }

  // Nobody listens: prints the failure on the error stream, exits with -1.
  [[noreturn]] virtual void default_catch_handler();

  // The shared stream in which a message is composed: 512 bytes with the NUL.
  static FixedTextStream errstream;

 private:
  ExceptionManager() = default;

  Exception* head_ = nullptr;
  Exception* last_ = nullptr;
  ExceptionContext* environment_ = nullptr;
};

extern "C" void throw_break();

// A place to which throws jump while the object lives, from its construction
// until restore_env() or destruction.
class ExceptionEnvironment {
 public:
  ExceptionEnvironment();
  ~ExceptionEnvironment() { restore_env(); }
  ExceptionEnvironment(const ExceptionEnvironment&) = delete;
  ExceptionEnvironment& operator=(const ExceptionEnvironment&) = delete;

  // Makes the enclosing environment the innermost again. Harmless when called
  // twice, as long as no other environment was opened in between.
  void restore_env();

  ExceptionContext& context() { return env_; }

 private:
  ExceptionContext env_;
  ExceptionContext* last_env_;
};

// The name that a throw reports: the base of a source path, no extension.
template <std::size_t N>
struct SourceName {
  char text[N]{};
  explicit constexpr SourceName(const char (&path)[N]) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i + 1 < N; ++i) {
      if (path[i] == '/') begin = i + 1;
    }
    for (std::size_t i = begin; i + 1 < N && path[i] != '.'; ++i) text[i - begin] = path[i];
  }
};

// Composes the message (`text` is a chain of << operands), places it and jumps.
// Helpers that throw for their callers tell the caller's line: THROW_AT takes it,
// from a last parameter `int line = __builtin_LINE()`. THROW_FROM also takes the
// name of the source, a literal.
#define THROW_FROM(Family, source_, line_, text_)                                               \
  do {                                                                                          \
    ::vandrelle::ExceptionManager::errstream.rewind();                                          \
    ::vandrelle::ExceptionManager::errstream << text_;                                          \
    ::vandrelle::ExceptionManager::instance()->do_throw(                                        \
        (new ::vandrelle::_Exception_##Family(::vandrelle::ExceptionManager::errstream.text())) \
            ->place(source_, line_));                                                           \
  } while (false)
#define THROW_AT(Family, line_, text_)                                        \
  do {                                                                        \
    static constexpr ::vandrelle::SourceName vandrelle_source_name(__FILE__); \
    THROW_FROM(Family, vandrelle_source_name.text, line_, text_);             \
  } while (false)
#define THROW(Family, text_) THROW_AT(Family, __LINE__, text_)

// True on the direct road; false when a throw has come back.
#define GUARDED(environment_) (setjmp((environment_).context()) == 0)

// Families. A family may derive from up to two others; the tag is the tail of
// the class name. Each module declares its own.
#define VANDRELLE_EXCEPTION_BODY(Tag, ParentTest)                                           \
  class _Exception_##Tag : public ::vandrelle::Exception {                                  \
   public:                                                                                  \
    explicit _Exception_##Tag(const char* message_) : ::vandrelle::Exception(message_) {}   \
    static const char* Name() { return #Tag; }                                              \
    static bool IsExactly(const char* classname) { return sameName(Name(), classname); }    \
    static bool IsA(const char* classname) { return IsExactly(classname) || (ParentTest); } \
    const char* name() const override { return Name(); }                                    \
    bool isA(const char* classname) const override { return IsA(classname); }               \
  }
#define EXCEPTION_FAMILY(Tag) VANDRELLE_EXCEPTION_BODY(Tag, false)
#define EXCEPTION_FAMILY_1(Tag, Parent) \
  VANDRELLE_EXCEPTION_BODY(Tag, _Exception_##Parent::IsA(classname))
#define EXCEPTION_FAMILY_2(Tag, Parent1, Parent2) \
  VANDRELLE_EXCEPTION_BODY(                       \
      Tag, _Exception_##Parent1::IsA(classname) || _Exception_##Parent2::IsA(classname))

EXCEPTION_FAMILY(Unimpl);
EXCEPTION_FAMILY(System);
EXCEPTION_FAMILY_1(IO, System);
EXCEPTION_FAMILY(Assert);
EXCEPTION_FAMILY(Fatal);

}  // namespace vandrelle
