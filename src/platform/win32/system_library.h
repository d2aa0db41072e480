// Functions of the system's DLLs that aren't imported: those that not every Windows has, and those
// of DLLs that the loader would take from the program's own folder if somebody put one there.
#pragma once

namespace torvane {

/// The address of function `name` in DLL `library` of the system's folder; null where the system
/// has no such DLL or function.
void (*FindSystemFunction(const wchar_t* library, const char* name))();

/// The same as a pointer to a function of type `Function`.
template <class Function>
Function* SystemFunction(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function*>(FindSystemFunction(library, name));
}

}  // namespace torvane
