#pragma once

// The functions of QEMU that a plugin calls, and those that it defines, in version 1 of the interface.
// Debian's packages have no header with them.

#include <cstddef>
#include <cstdint>

extern "C" {

struct qemu_plugin_tb;      // a block of instructions of the guest, being translated
struct qemu_plugin_insn;    // one of them
struct qemu_plugin_hwaddr;  // where an address leads
struct qemu_info_t;         // what is emulated

using QemuPluginBlockCallback = void(uint64_t plugin, qemu_plugin_tb* block);
// After an instruction has accessed memory; `access` describes how.
using QemuPluginMemoryCallback = void(unsigned processor, uint32_t access, uint64_t address, void* data);
using QemuPluginExitCallback = void(uint64_t plugin, void* data);

enum QemuPluginRegisters { QEMU_PLUGIN_CB_NO_REGS };  // what a callback uses of the processor's
enum QemuPluginAccesses { QEMU_PLUGIN_MEM_RW = 3 };   // what a callback is called for
constexpr int kQemuPluginVersion = 1;

// What is done, without a callback, whenever a block runs.
enum QemuPluginOperation { QEMU_PLUGIN_INLINE_ADD_U64 };
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb* block, QemuPluginOperation operation,
                                              void* number, uint64_t summand);

void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t plugin, QemuPluginBlockCallback* callback);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb* block);
qemu_plugin_insn* qemu_plugin_tb_get_insn(const qemu_plugin_tb* block, std::size_t index);
const void* qemu_plugin_insn_data(const qemu_plugin_insn* instruction);
std::size_t qemu_plugin_insn_size(const qemu_plugin_insn* instruction);
uint64_t qemu_plugin_tb_vaddr(const qemu_plugin_tb* block);
void qemu_plugin_register_vcpu_mem_cb(qemu_plugin_insn* instruction, QemuPluginMemoryCallback* callback,
                                      QemuPluginRegisters registers, QemuPluginAccesses accesses, void* data);
void qemu_plugin_register_atexit_cb(uint64_t plugin, QemuPluginExitCallback* callback, void* data);

unsigned qemu_plugin_mem_size_shift(uint32_t access);  // the access has two to this power bytes
bool qemu_plugin_mem_is_store(uint32_t access);
// Null if the address leads nowhere. It lasts until the callback returns.
qemu_plugin_hwaddr* qemu_plugin_get_hwaddr(uint32_t access, uint64_t address);
bool qemu_plugin_hwaddr_is_io(const qemu_plugin_hwaddr* address);
uint64_t qemu_plugin_hwaddr_phys_addr(const qemu_plugin_hwaddr* address);

// Defined by the plugin, and found by their names.
[[gnu::visibility("default")]] extern int qemu_plugin_version;
[[gnu::visibility("default")]] int qemu_plugin_install(uint64_t plugin, const qemu_info_t* emulated,
                                                       int count, char** arguments);
}
