#include "tarselvalues/core/lvReferencable.h"

#include "tarselvalues/core/Address.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvString.h"

namespace {

void initRecursive(pthread_mutex_t& mutex) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

class MutexGuard {
 public:
  explicit MutexGuard(pthread_mutex_t& guarded) noexcept : mutex(guarded) {
    pthread_mutex_lock(&mutex);
  }
  ~MutexGuard() { pthread_mutex_unlock(&mutex); }
  MutexGuard(MutexGuard const&) = delete;
  MutexGuard& operator=(MutexGuard const&) = delete;

 private:
  pthread_mutex_t& mutex;
};

}  // namespace

namespace tarselvalues {

void takeReference(lvReferencable const& object) noexcept {
  MutexGuard const guard(object.mutex_);
  ++object.count_;
}

void dropReference(lvReferencable const& object) {
  const_cast<lvReferencable&>(object).__removeRef();
}

}  // namespace tarselvalues

lvReferencable::lvReferencable() : typeByte_(ObjectKind << KindShift), count_(0) {
  initRecursive(mutex_);
}

lvReferencable::~lvReferencable() { pthread_mutex_destroy(&mutex_); }

int lvReferencable::equiv(lvReferencable const& other) const { return this == &other ? 1 : 0; }

unsigned int lvReferencable::hashCode() const { return 0; }

int lvReferencable::compareTo(lvReferencable const& other) const {
  return tarselvalues::wordDifference(tarselvalues::addressWord(this) >> 2,
                                      tarselvalues::addressWord(&other) >> 2);
}

lvArg lvReferencable::getValue() const { return lvArg::NilValue; }

int lvReferencable::__mark() { return 0; }

lvString const& lvReferencable::getClassDesc() const { return getStaticClassDesc(); }

int lvReferencable::finalize() { return 0; }

int lvReferencable::__hook() { return 0; }

lvString const& lvReferencable::getStaticClassDesc() {
  return tarselvalues::referencableClassKey();
}

int lvReferencable::__removeRef() {
  {
    MutexGuard const guard(mutex_);
    if (--count_ != 0) {
      return 0;
    }
    if (isImmortal()) {
      count_ = ImmortalCount;
      return 0;
    }
    count_ = DyingCount;
  }
  if (finalize() == FinalizeRefused) {
    return 0;
  }
  delete this;
  return 1;
}

void lvReferencable::__makeImmortal() {
  typeByte_.fetch_or(static_cast<std::uint8_t>(ImmortalBits), std::memory_order_relaxed);
}

bool lvReferencable::isImmortal() const {
  return (typeByte_.load(std::memory_order_relaxed) & ImmortalBits) == ImmortalBits;
}

bool lvReferencable::isStillUnheld() {
  MutexGuard const guard(mutex_);
  if (count_ >= DyingCount / 2) {
    return true;  // Nobody let go: finalize() was called by itself.
  }
  if (count_ > DyingCount) {
    count_ -= DyingCount;  // Found and held again.
    return false;
  }
  if (isImmortal()) {
    count_ = ImmortalCount;
    return false;
  }
  return true;
}
