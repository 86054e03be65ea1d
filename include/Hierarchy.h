// The system's own run-time type test: a class that needs one answers type()
// with a descriptor object, and the descriptor says by name what the class is
// and derives from. Names are compared exactly; case matters.
#pragma once

namespace vandrelle {

class HierarchyDescriptor {
 public:
  virtual ~HierarchyDescriptor();

  // The class's own name; a literal.
  virtual const char* name() const = 0;

  // True if `classname` is the class's name or that of a class it derives from.
  virtual bool isA(const char* classname) const = 0;

  // True if `classname` is the class's own name.
  virtual bool isExactly(const char* classname) const;

  // The descriptor itself if isA(classname) holds, else null.
  const HierarchyDescriptor* castImpl(const char* classname) const;

 protected:
  static bool sameName(const char* a, const char* b);
};

// Declares the descriptor class of a class without a described parent, or of
// one with a parent whose descriptor is declared already.
#define VANDRELLE_DESCRIPTOR_BODY(Class, ParentTest)                                        \
  class _Descriptor_##Class : public ::vandrelle::HierarchyDescriptor {                     \
   public:                                                                                  \
    static const char* Name() { return #Class; }                                            \
    static bool IsExactly(const char* classname) { return sameName(Name(), classname); }    \
    static bool IsA(const char* classname) { return IsExactly(classname) || (ParentTest); } \
    const char* name() const override { return Name(); }                                    \
    bool isA(const char* classname) const override { return IsA(classname); }               \
  }
#define DESCRIPTOR_ROOT(Class) VANDRELLE_DESCRIPTOR_BODY(Class, false)
#define DESCRIPTOR_CHILD(Class, Parent) \
  VANDRELLE_DESCRIPTOR_BODY(Class, _Descriptor_##Parent::IsA(classname))

// Inside a described class: its static descriptor object and the virtual type().
#define DESCRIBED_ROOT(Class)             \
 public:                                  \
  static const _Descriptor_##Class type_; \
  virtual const ::vandrelle::HierarchyDescriptor* type() const { return &type_; }
#define DESCRIBED(Class)                  \
 public:                                  \
  static const _Descriptor_##Class type_; \
  const ::vandrelle::HierarchyDescriptor* type() const override { return &type_; }

// In the class's source file: the one object.
#define DEFINE_DESCRIPTOR(Class) \
  const _Descriptor_##Class Class::type_ {}

// The safe downcast: `object` as a Class*, or null when its descriptor says no
// (or when `object` is null).
#define DESCRIPTOR_CAST(Class, object) \
  ((object) != nullptr && (object)->type()->isA(#Class) ? static_cast<Class*>(object) : nullptr)

}  // namespace vandrelle
