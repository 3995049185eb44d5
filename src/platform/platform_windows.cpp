#include <windows.h>
// After windows.h.
#include <process.h>

#include <new>

#include "platform/platform.h"

namespace __gnu_cxx {
void __freeres();  // of the C++ run-time library: frees the memory that it keeps for exceptions
}

namespace quentara::platform {
namespace {

struct ThreadStart {
  ThreadBody body;
  void* data;
  int index;
};

unsigned __stdcall RunThread(void* start) {
  const ThreadStart& thread = *static_cast<const ThreadStart*>(start);
  return static_cast<unsigned>(thread.body(thread.data, thread.index));
}

}  // namespace

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

std::vector<int> RunThreads(ThreadBody body, void* data, int count) {
  std::vector<int> codes(static_cast<std::size_t>(count));
  std::vector<ThreadStart> starts(codes.size());
  std::vector<HANDLE> threads(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) starts[i] = {body, data, static_cast<int>(i)};
  for (std::size_t i = 1; i < codes.size(); ++i) {
    threads[i] = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, RunThread, &starts[i], 0, nullptr));
    if (threads[i] == nullptr) codes[i] = body(data, starts[i].index);  // No thread to be had: the work is done here.
  }
  codes[0] = body(data, 0);
  for (std::size_t i = 1; i < codes.size(); ++i) {
    if (threads[i] == nullptr) continue;
    DWORD code = 0;
    WaitForSingleObject(threads[i], INFINITE);
    GetExitCodeThread(threads[i], &code);
    CloseHandle(threads[i]);
    codes[i] = static_cast<int>(code);
  }
  return codes;
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

struct CriticalSection::Native {
  CRITICAL_SECTION section;
};

CriticalSection::CriticalSection() : native_(std::make_unique<Native>()) {
  InitializeCriticalSection(&native_->section);
}

CriticalSection::~CriticalSection() {
  DeleteCriticalSection(&native_->section);
}

void CriticalSection::lock() {
  EnterCriticalSection(&native_->section);
}

void CriticalSection::unlock() {
  LeaveCriticalSection(&native_->section);
}

}  // namespace quentara::platform

// The run-time library is part of the effect's and goes with it, but leaves it to us to say so.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}
