// A plugin of qemu-user: prints how many instructions the program's first thread has executed.
//
//   qemu-arm -plugin libInstructionCounter.so -d plugin PROGRAM
//
// The emulator translates a program block by block and runs a block from its beginning to its end,
// so counting blocks with their lengths is exact. Other threads are left out: how far they get
// before the program ends is not the same twice.

#include <cstddef>
#include <cstdint>
#include <string>

// The emulator's plugin interface, version 1. Its header is in no package, so what is used of it is
// declared here; the names and types are the emulator's.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {
struct qemu_info_t;
struct qemu_plugin_tb;
using qemu_plugin_id_t = std::uint64_t;
using qemu_plugin_tb_translated = void (*)(qemu_plugin_id_t, qemu_plugin_tb*);
using qemu_plugin_tb_executed = void (*)(unsigned int thread, void* argument);
using qemu_plugin_exits = void (*)(qemu_plugin_id_t, void* argument);
enum qemu_plugin_cb_flags { QEMU_PLUGIN_CB_NO_REGS = 0 };

void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id, qemu_plugin_tb_translated called);
void qemu_plugin_register_vcpu_tb_exec_cb(qemu_plugin_tb* block, qemu_plugin_tb_executed called,
                                          qemu_plugin_cb_flags flags, void* argument);
void qemu_plugin_register_atexit_cb(qemu_plugin_id_t id, qemu_plugin_exits called, void* argument);
std::size_t qemu_plugin_tb_n_insns(qemu_plugin_tb const* block);
void qemu_plugin_outs(char const* text);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;
__attribute__((visibility("default"))) int qemu_plugin_install(qemu_plugin_id_t id,
                                                               qemu_info_t const* info, int argc,
                                                               char** argv);
}
// NOLINTEND(readability-identifier-naming)

namespace {

constexpr unsigned int FirstThread = 0;

std::uint64_t executed = 0;  // by the first thread, which alone touches it

void onExecuted(unsigned int thread, void* length) {
  if (thread == FirstThread) {
    executed += reinterpret_cast<std::uintptr_t>(length);
  }
}

void onTranslated(qemu_plugin_id_t, qemu_plugin_tb* block) {
  std::uintptr_t const length = qemu_plugin_tb_n_insns(block);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the argument is a number, never dereferenced.
  auto* const argument = reinterpret_cast<void*>(length);
  qemu_plugin_register_vcpu_tb_exec_cb(block, onExecuted, QEMU_PLUGIN_CB_NO_REGS, argument);
}

void onExit(qemu_plugin_id_t, void*) {
  qemu_plugin_outs(("instructions: " + std::to_string(executed) + "\n").c_str());
}

}  // namespace

int qemu_plugin_install(qemu_plugin_id_t id, qemu_info_t const*, int, char**) {
  qemu_plugin_register_vcpu_tb_trans_cb(id, onTranslated);
  qemu_plugin_register_atexit_cb(id, onExit, nullptr);
  return 0;
}
