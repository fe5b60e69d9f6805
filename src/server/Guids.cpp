// Defines the numbers that VardoBasic.h declares.
#include <initguid.h>
// After initguid.h, which turns the declarations into definitions.
#include <VardoBasic.h>
