/// What lets one build load on images whose C library is older than the compiler's: hidden
/// definitions of the few functions for which the C++ run time, linked in statically, would demand
/// a new one. None of them is seen outside the module.

#include <dlfcn.h>
#include <link.h>
#include <pthread.h>
#include <sched.h>

#include <cerrno>
#include <cstdint>

#define HIDDEN __attribute__((visibility("hidden")))

namespace {

struct Search {
  std::uintptr_t address;
  dl_find_object* result;
};

/// Takes `object` for the result if a segment of it holds the address, for dl_iterate_phdr(3).
int takeIfHolding(dl_phdr_info* object, std::size_t /*size*/, void* data) {
  const Search& search = *static_cast<Search*>(data);
  bool holds = false;
  std::uintptr_t eh_frame = 0;
  std::uintptr_t start = UINTPTR_MAX;
  std::uintptr_t end = 0;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const auto& segment = object->dlpi_phdr[i];
    const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
    if (segment.p_type == PT_GNU_EH_FRAME) eh_frame = begin;
    if (segment.p_type != PT_LOAD) continue;
    holds = holds || (search.address >= begin && search.address < begin + segment.p_memsz);
    if (begin < start) start = begin;
    if (begin + segment.p_memsz > end) end = begin + segment.p_memsz;
  }
  if (!holds || eh_frame == 0) return 0;
  *search.result = {};
  search.result->dlfo_map_start = reinterpret_cast<void*>(start);
  search.result->dlfo_map_end = reinterpret_cast<void*>(end);
  search.result->dlfo_eh_frame = reinterpret_cast<void*>(eh_frame);
  return 1;
}

constexpr int kRunning = PTHREAD_ONCE_INIT + 1;
constexpr int kDone = PTHREAD_ONCE_INIT + 2;

}  // namespace

extern "C" {

/// Never: that a process has one thread is only a reason to be quicker.
HIDDEN extern char __libc_single_threaded;
char __libc_single_threaded = 0;

/// As dlfcn.h of a C library that has it describes; 0 when the object was found.
HIDDEN int _dl_find_object(void* address, dl_find_object* result) noexcept {
  Search search = {reinterpret_cast<std::uintptr_t>(address), result};
  return dl_iterate_phdr(&takeIfHolding, &search) == 1 ? 0 : -1;
}

/// pthread_once(3).
HIDDEN int pthread_once(pthread_once_t* control, void (*routine)()) {
  int expected = PTHREAD_ONCE_INIT;
  if (__atomic_compare_exchange_n(control, &expected, kRunning, false, __ATOMIC_ACQUIRE,
                                  __ATOMIC_ACQUIRE)) {
    routine();
    __atomic_store_n(control, kDone, __ATOMIC_RELEASE);
  }
  while (__atomic_load_n(control, __ATOMIC_ACQUIRE) != kDone) sched_yield();
  return 0;
}

/// The run time only looks whether this is there, and takes a process that has it for one with
/// threads. Whoever called it would be told that there are no keys left (pthread_key_create(3)).
HIDDEN int __pthread_key_create(pthread_key_t* /*key*/, void (* /*destructor*/)(void*)) {
  return EAGAIN;
}
}
