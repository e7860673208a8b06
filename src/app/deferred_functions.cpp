#include "app/deferred_functions.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

// By the System V ABI of x86-64: a stand-in jumps to what its slot holds. That is the function, or
// at first the entry, which finds it with all arguments kept, those of variadic functions too.

extern "C" void vantrelDeferredEntry();

namespace {

constexpr const char* kModule = "vantrel-codecs.so";
/// As the system's loader exits.
constexpr int kNotFound = 127;

constexpr const char* kNames[] = {
#define DEFERRED(number, name) #name,
#include "deferred_functions.inc"
#undef DEFERRED
};

[[noreturn]] void giveUp() {
  std::fprintf(stderr, "vantrel: %s\n", ::dlerror());
  ::_exit(kNotFound);
}

/// Never unloaded.
void* module() {
  static void* const handle = ::dlopen(kModule, RTLD_NOW | RTLD_LOCAL);
  if (!handle) giveUp();
  return handle;
}

}  // namespace

extern "C" {

using VantrelDeferred = void (*)();

VantrelDeferred vantrelDeferredSlots[] = {
#define DEFERRED(number, name) vantrelDeferredEntry,
#include "deferred_functions.inc"
#undef DEFERRED
};

VantrelDeferred vantrelFindDeferred(unsigned number) {
  void* const found = ::dlsym(module(), kNames[number]);
  if (!found) giveUp();
  const auto function = reinterpret_cast<VantrelDeferred>(found);
  // Whoever finds it at the same time writes the same.
  __atomic_store_n(&vantrelDeferredSlots[number], function, __ATOMIC_RELEASE);
  return function;
}

}  // extern "C"

#define DEFERRED(number, name)                  \
  asm(".pushsection .text\n"                    \
      ".globl " #name                           \
      "\n"                                      \
      ".type " #name ", @function\n" #name      \
      ":\n"                                     \
      "  endbr64\n"                             \
      "  movl $" #number                        \
      ", %r11d\n"                               \
      "  jmp *(vantrelDeferredSlots+8*" #number \
      ")(%rip)\n"                               \
      ".size " #name ", .-" #name               \
      "\n"                                      \
      ".popsection\n");
#include "deferred_functions.inc"
#undef DEFERRED

asm(R"(
  .pushsection .text
  .globl vantrelDeferredEntry
  .type vantrelDeferredEntry, @function
vantrelDeferredEntry:
  endbr64
  pushq %rbp
  movq %rsp, %rbp
  pushq %rax
  pushq %rdi
  pushq %rsi
  pushq %rdx
  pushq %rcx
  pushq %r8
  pushq %r9
  subq $136, %rsp
  movaps %xmm0, (%rsp)
  movaps %xmm1, 16(%rsp)
  movaps %xmm2, 32(%rsp)
  movaps %xmm3, 48(%rsp)
  movaps %xmm4, 64(%rsp)
  movaps %xmm5, 80(%rsp)
  movaps %xmm6, 96(%rsp)
  movaps %xmm7, 112(%rsp)
  movl %r11d, %edi
  call vantrelFindDeferred
  movq %rax, %r11
  movaps (%rsp), %xmm0
  movaps 16(%rsp), %xmm1
  movaps 32(%rsp), %xmm2
  movaps 48(%rsp), %xmm3
  movaps 64(%rsp), %xmm4
  movaps 80(%rsp), %xmm5
  movaps 96(%rsp), %xmm6
  movaps 112(%rsp), %xmm7
  addq $136, %rsp
  popq %r9
  popq %r8
  popq %rcx
  popq %rdx
  popq %rsi
  popq %rdi
  popq %rax
  popq %rbp
  jmp *%r11
  .size vantrelDeferredEntry, .-vantrelDeferredEntry
  .popsection
)");

namespace vantrel {

void loadDeferredFunctions() {
  module();
}

}  // namespace vantrel
