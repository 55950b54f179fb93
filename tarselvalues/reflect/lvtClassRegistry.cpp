#include "tarselvalues/reflect/lvtClassRegistry.h"

#include <atomic>
#include <memory>
#include <mutex>

#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/NameIndex.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

constexpr int AlreadyThere = -1;

// The registry's set of classes: room for so many, and growth by as many.
constexpr int SetSize = 8;

struct BuiltinClass {
  char const* name;
  lvrClass::DefaultCtor* defaultCtor;
};

constexpr BuiltinClass builtinClasses[] = {
    {"Class", lvrClass::defaultCtorMethod},       {"DLList", lvrDLList::defaultCtorMethod},
    {"HashMap", lvrVector::defaultCtorMethod},  // Deliberately a vector.
    {"Stack", lvrStack::defaultCtorMethod},       {"String", lvrString::defaultCtorMethod},
    {"TupleSet", lvrTupleSet::defaultCtorMethod}, {"Vector", lvrVector::defaultCtorMethod},
};

// The single instance, whether it is being filled, and whether it holds the built-in classes.
std::atomic<lvtClassRegistry*> instance{nullptr};
bool filling = false;
std::atomic<bool> filled{false};

// From the names of the classes in the one instance to these; null for what is no class. The set is
// asked about that, and about names that are not here.
using ClassIndex = tarselvalues::NameIndex<lvReferencable const*>;

constexpr std::size_t MaxIndexed = 120;
ClassIndex::Slot indexSlots[ClassIndex::slotsFor(MaxIndexed)];
ClassIndex classIndex(indexSlots, MaxIndexed);

bool isTheInstance(lvtClassRegistry const& registry) {
  return &registry == instance.load(std::memory_order_relaxed);
}

lvrTupleSet& setIn(lvArg const& classes) {
  return static_cast<lvrTupleSet&>(*classes.getReferencable());
}

}  // namespace

lvtClassRegistry* lvtClassRegistry::getInstance() {
  if (!filled.load(std::memory_order_acquire)) {
    // Recursive: what runs while the registry is filled may ask for it.
    static std::recursive_mutex making;
    std::lock_guard<std::recursive_mutex> const guard(making);
    if (instance == nullptr) {
      std::unique_ptr<lvtClassRegistry> made(new lvtClassRegistry);
      if (instance == nullptr) {  // A std::new_handler may have asked for it.
        instance = made.release();
      }
    }
    if (!filling) {
      filling = true;
      try {
        instance.load()->addBuiltinClasses();
      } catch (...) {
        filling = false;  // The next call goes on where this one ran out of memory.
        throw;
      }
      filled.store(true, std::memory_order_release);
    }
  }
  return instance.load(std::memory_order_relaxed);
}

lvtClassRegistry::lvtClassRegistry() {
  classes_.setReferencable(*new lvrTupleSet(SetSize, SetSize, 0));
}

lvtClassRegistry::~lvtClassRegistry() = default;

int lvtClassRegistry::putClass(lvArg const& name, lvArg const& classHandle) {
  lvrTupleSet& classes = setIn(classes_);
  bool known = false;
  classes.search(name, &known);
  if (known) {
    return AlreadyThere;
  }
  int const status = classes.put(name, classHandle);
  // Nil is not kept, nor the name with it.
  if (isTheInstance(*this) && !classHandle.isNil()) {
    bool const isClass = classHandle.getType() == lvArg::ClassType;
    classIndex.set(name, isClass ? classHandle.getReferencable() : nullptr);
  }
  return status;
}

lvArg lvtClassRegistry::getClass(lvArg const& name) {
  if (isTheInstance(*this)) {
    lvReferencable const* const* const found = classIndex.find(name);
    if (found != nullptr && *found != nullptr) {
      lvArg result;
      result.setReferencableFast(**found, lvArg::ClassType);
      return result;
    }
  }
  return setIn(classes_).get(name);
}

void lvtClassRegistry::addBuiltinClasses() {
  for (BuiltinClass const& builtin : builtinClasses) {
    lvString const name(builtin.name);
    putClass(name, lvClass(1, name, builtin.defaultCtor));
  }
}
