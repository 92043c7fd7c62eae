// Counts allocations while `laskeVaraukset` is set. It replaces operator new, so a test
// program includes it in one file only.
#pragma once

#include <cstdlib>
#include <new>

namespace {
bool laskeVaraukset = false;
long varauksia = 0;
}  // namespace

// All kept out of line: inlined, the compiler would see malloc() meet operator delete.
[[gnu::noinline]] void* operator new(std::size_t koko) {
  if (laskeVaraukset) ++varauksia;
  if (void* p = std::malloc(koko ? koko : 1)) return p;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }
