#ifndef Pegasus_Config_h
#define Pegasus_Config_h

// Build settings for the OpenPegasus-compatible interfaces. Only the 64-bit
// Linux/GNU platform is supported, so the platform choices are fixed here.

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <limits.h>
#include <sys/param.h>

#ifdef __cplusplus
#include <cstdlib>
#endif

#define PEGASUS_OS_TYPE_UNIX
#define PEGASUS_OS_LINUX
#ifndef PEGASUS_PLATFORM_LINUX_GENERIC_GNU
#define PEGASUS_PLATFORM_LINUX_GENERIC_GNU
#endif
#define PEGASUS_POINTER_64BIT
#define PEGASUS_COMPILER_GNU
#define PEGASUS_HAVE_NAMESPACES
#define PEGASUS_HAVE_FOR_SCOPE
#define PEGASUS_HAVE_TEMPLATE_SPECIALIZATION
#define PEGASUS_HAVE_PTHREADS

#define PEGASUS_UINT64 unsigned long long
#define PEGASUS_SINT64 long long

#define PEGASUS_EXPORT __attribute__((visibility("default")))
#define PEGASUS_IMPORT __attribute__((visibility("default")))
#define PEGASUS_HIDDEN_LINKAGE __attribute__((visibility("hidden")))

#ifdef __cplusplus
#define PEGASUS_NAMESPACE_BEGIN namespace Pegasus {
#define PEGASUS_NAMESPACE_END }
#define PEGASUS_NAMESPACE(X) Pegasus::X
#define PEGASUS_STD(X) std::X
#define PEGASUS_USING_STD using namespace std
#define PEGASUS_USING_PEGASUS using namespace Pegasus
#else
#define PEGASUS_NAMESPACE_BEGIN
#define PEGASUS_NAMESPACE_END
#define PEGASUS_NAMESPACE(X) X
#define PEGASUS_STD(X) X
#define PEGASUS_USING_STD
#define PEGASUS_USING_PEGASUS
#endif

#define PEGASUS_EXPLICIT
#define PEGASUS_TEMPLATE_SPECIALIZATION template <>
#define PEGASUS_IOS_BINARY
#define PEGASUS_OR_IOS_BINARY

#define PEGASUS_SINT64_LITERAL(X) (Sint64(X##LL))
#define PEGASUS_UINT64_LITERAL(X) (Uint64(X##ULL))
#define PEGASUS_64BIT_CONVERSION_WIDTH "ll"

#ifndef PEGASUS_MAXHOSTNAMELEN
#ifdef _POSIX_HOST_NAME_MAX
#define PEGASUS_MAXHOSTNAMELEN _POSIX_HOST_NAME_MAX
#else
#define PEGASUS_MAXHOSTNAMELEN MAXHOSTNAMELEN
#endif
#endif

#define PEGASUS_UNREACHABLE(CODE) __builtin_unreachable();
#define PEGASUS_FORMAT(A1, A2) __attribute__((format(printf, A1, A2)))

#ifndef PEGASUS_INITIAL_THREADSTACK_SIZE
#define PEGASUS_INITIAL_THREADSTACK_SIZE 256 * 1024
#endif

#ifndef PEGASUS_PG_OBJECTMANAGER_ELEMENTNAME
#define PEGASUS_PG_OBJECTMANAGER_ELEMENTNAME "Pegasus"
#endif

#ifndef PEGASUS_INSTANCEID_GLOBAL_PREFIX
#define PEGASUS_INSTANCEID_GLOBAL_PREFIX "PG"
#endif

#ifdef __cplusplus
PEGASUS_NAMESPACE_BEGIN

typedef bool Boolean;
typedef unsigned char Uint8;
typedef signed char Sint8;
typedef unsigned short Uint16;
typedef signed short Sint16;
typedef unsigned int Uint32;
typedef signed int Sint32;
typedef float Real32;
typedef double Real64;
typedef PEGASUS_UINT64 Uint64;
typedef PEGASUS_SINT64 Sint64;

#define PEG_NOT_FOUND Uint32(-1)

PEGASUS_NAMESPACE_END
#endif

#endif /* Pegasus_Config_h */
