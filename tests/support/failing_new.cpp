#include "support/failing_new.h"

#include <cstdlib>
#include <new>

namespace quillon::test {

namespace {
thread_local long remaining = 0;  // allocations until the one that fails; 0 for none
thread_local bool allFollow = false;
thread_local bool hasFailed = false;

bool isTheOne() {
  if (remaining == 0 || --remaining > 0) return false;
  hasFailed = true;
  if (allFollow) remaining = 1;
  return true;
}
}  // namespace

FailingNew::FailingNew(long nth, bool isLasting) {
  hasFailed = false;
  allFollow = isLasting;
  remaining = nth;
}

FailingNew::~FailingNew() { remaining = 0; }

bool FailingNew::happened() const { return hasFailed; }

void* allocate(std::size_t size) {
  return isTheOne() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

}  // namespace quillon::test

void* operator new(std::size_t size) {
  void* memory = quillon::test::allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return quillon::test::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return quillon::test::allocate(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
