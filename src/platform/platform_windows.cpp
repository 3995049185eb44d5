#include <windows.h>
// After windows.h.
#include <process.h>

#include <new>

#include "platform/platform.h"

namespace __gnu_cxx {
void __freeres();  // of the C++ run-time library: frees the memory that it keeps for exceptions
}

namespace quentara::platform {

int ProcessorCount() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwNumberOfProcessors > 0 ? static_cast<int>(info.dwNumberOfProcessors) : 1;
}

std::uint64_t ClockTicks() {
  LARGE_INTEGER ticks;
  QueryPerformanceCounter(&ticks);
  return static_cast<std::uint64_t>(ticks.QuadPart);
}

struct Thread::Native {
  Body body;
  void* data;
  HANDLE handle;

  static unsigned __stdcall Run(void* native) {
    const auto& thread = *static_cast<const Native*>(native);
    thread.body(thread.data);
    return 0;
  }
};

Thread::Thread(Body body, void* data) : native_(new Native{body, data, nullptr}) {
  native_->handle = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, Native::Run, native_.get(), 0, nullptr));
  if (native_->handle == nullptr) throw std::bad_alloc();
}

Thread::~Thread() {
  WaitForSingleObject(native_->handle, INFINITE);
  CloseHandle(native_->handle);
}

// Static slots come and go with the library: its DllMain, the run-time library's, runs static initialisers when the
// library is loaded and finalisers when it is unloaded.
ThreadPointer::ThreadPointer() : slot_(TlsAlloc()) {
  if (slot_ == TLS_OUT_OF_INDEXES) throw std::bad_alloc();
}

ThreadPointer::~ThreadPointer() {
  TlsFree(slot_);
}

void* ThreadPointer::Get() const {
  return TlsGetValue(slot_);
}

void ThreadPointer::Set(const void* pointer) {
  TlsSetValue(slot_, const_cast<void*>(pointer));
}

struct Monitor::Native {
  CRITICAL_SECTION section;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
};

Monitor::Monitor() : native_(std::make_unique<Native>()) {
  InitializeCriticalSection(&native_->section);
}

Monitor::~Monitor() {
  DeleteCriticalSection(&native_->section);
}

void Monitor::lock() {
  EnterCriticalSection(&native_->section);
}

void Monitor::unlock() {
  LeaveCriticalSection(&native_->section);
}

void Monitor::Wait() {
  SleepConditionVariableCS(&native_->changed, &native_->section, INFINITE);
}

void Monitor::NotifyAll() {
  WakeAllConditionVariable(&native_->changed);
}

}  // namespace quentara::platform

// The run-time library is part of the effect's and goes with it, but leaves it to us to say so.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}
