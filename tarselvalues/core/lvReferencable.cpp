#include "tarselvalues/core/lvReferencable.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "tarselvalues/core/Address.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Counting.h"
#include "tarselvalues/core/ObjectLock.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvString.h"

namespace {

using tarselvalues::ObjectLock;

// How deep last releases may nest: an object that goes releases what it holds, and so on. What
// would go deeper waits until the outermost release has got so far, so the native stack that a
// release takes does not grow with the depth of what is released.
constexpr int MaxNestedReleases = 110;

// What this thread is releasing. Without a destructor, so that it is there at any time; reached
// without a call that might allocate.
struct Releases {
  int nested;
  lvReferencable* waiting;  // the object that was put off last; each knows the one before
};
__attribute__((tls_model("initial-exec"))) thread_local Releases releases{};

class NestedRelease {
 public:
  NestedRelease() noexcept { ++releases.nested; }
  ~NestedRelease() { --releases.nested; }
  NestedRelease(NestedRelease const&) = delete;
  NestedRelease& operator=(NestedRelease const&) = delete;
};

// An object that waits for its end has no use for its mutex: that holds the link. The last bytes
// do, which leaves the rest as pthread_mutex_destroy() has marked it.
constexpr std::size_t LinkOffset = sizeof(pthread_mutex_t) - sizeof(lvReferencable*);

void setLink(pthread_mutex_t& place, lvReferencable* link) {
  std::memcpy(reinterpret_cast<char*>(&place) + LinkOffset, &link, sizeof(link));
}

lvReferencable* linkIn(pthread_mutex_t const& place) {
  lvReferencable* link = nullptr;
  std::memcpy(&link, reinterpret_cast<char const*>(&place) + LinkOffset, sizeof(link));
  return link;
}

}  // namespace

namespace tarselvalues {

void takeReference(lvReferencable const& object) noexcept { Counting::take(object); }

void dropReference(lvReferencable const& object) {
  Counting::drop(const_cast<lvReferencable&>(object));
}

bool mayRunProgram(lvReferencable const& object) { return !isOwnString(object); }

void KeptAlive::keep(lvReferencable const& kept) noexcept {
  ObjectLock const guard(kept.mutex_);
  // Below 0, but not at its end, is an interned string that was found again.
  std::int32_t const count = kept.count();
  if (count != 0 && count != lvReferencable::DyingCount) {
    kept.setCount(count + 1);
    object = &kept;
  }
}

lvArg const& KeptWhileAsking::ask(lvArg const& cell) {
  lvReferencable const* const asked = cell.getReferencable();
  if (container != nullptr && asked != nullptr && mayRunProgram(*asked)) {
    kept.emplace(*std::exchange(container, nullptr));
  }
  return cell;
}

}  // namespace tarselvalues

lvReferencable::lvReferencable() : typeByte_(ObjectKind << KindShift), ownNumber_(0), count_(0) {
  tarselvalues::initObjectMutex(mutex_);
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
    ObjectLock const guard(mutex_);
    setCount(count() - 1);
    if (count() != 0) {
      return 0;
    }
    if (isImmortal()) {
      setCount(ImmortalCount);
      return 0;
    }
    setCount(DyingCount);
  }
  if (tarselvalues::Tuned && tarselvalues::isExactly<lvrString>(*this)) {
    static_cast<lvrString*>(this)->end();
    return 1;
  }
  // A string holds nothing, so it can go at any depth. It must not wait: an interned one can be
  // found meanwhile.
  if (releases.nested >= MaxNestedReleases && getKind() != StringKind) {
    putOff();
    return 1;
  }
  int const gone = finish();
  if (releases.nested == 0) {
    finishWaiting();
  }
  return gone;
}

// Ends the object, unless its finalize() refuses. Returns whether it is gone.
int lvReferencable::finish() {
  NestedRelease const nested;
  bool const mayRefuse = getKind() == StringKind;  // Asked first: once refused, others may end it.
  if (finalize() == FinalizeRefused && mayRefuse) {
    return 0;
  }
  delete this;
  return 1;
}

// Queues the object for finishWaiting(). Allocates nothing.
void lvReferencable::putOff() {
  pthread_mutex_destroy(&mutex_);
  setLink(mutex_, std::exchange(releases.waiting, this));
}

void lvReferencable::finishWaiting() {
  while (lvReferencable* const object = releases.waiting) {
    releases.waiting = linkIn(object->mutex_);
    tarselvalues::initObjectMutex(object->mutex_);
    object->finish();
  }
}

void lvReferencable::__makeImmortal() {
  typeByte_.fetch_or(static_cast<std::uint8_t>(ImmortalBits), std::memory_order_relaxed);
}

bool lvReferencable::isImmortal() const {
  return (typeByte_.load(std::memory_order_relaxed) & ImmortalBits) == ImmortalBits;
}

bool lvReferencable::isStillUnheld() {
  ObjectLock const guard(mutex_);
  if (!isEnding()) {
    return true;  // Nobody let go: finalize() was called by itself.
  }
  if (count() > DyingCount) {
    setCount(count() - DyingCount);  // Found and held again.
    return false;
  }
  if (isImmortal()) {
    setCount(ImmortalCount);
    return false;
  }
  return true;
}
