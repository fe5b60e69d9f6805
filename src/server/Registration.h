// What the registry says of the server, so that CreateObject("VardoBasic.Application") finds it.
#pragma once

namespace vardo {

enum class RegistrationScope {
  kMachine,  // for every user; writing needs an administrator
  kUser,     // for the current user alone
};

// Writes every key of the server that this code belongs to; what was there before of these keys is overwritten. Throws
// AutomationError with the HRESULT of the key that could not be written; what had been written by then is removed again.
void RegisterServer(RegistrationScope scope);

// Removes what RegisterServer writes and nothing else. What the 32-bit and the 64-bit server share stays as long as the other one
// is registered. Keys that are not there are no failure.
void UnregisterServer(RegistrationScope scope);

}  // namespace vardo
