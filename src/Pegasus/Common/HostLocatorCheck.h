#ifndef Pegasus_HostLocatorCheck_h
#define Pegasus_HostLocatorCheck_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

// Whether text names a host the way the host part of an object path must:
// a host name, a dotted IPv4 address or a bracketed IPv6 address ("[::1]";
// link-local ones need a known zone, "[fe80::1%eth0]"), then optionally ':'
// and a port number up to 65535, possibly empty.
PEGASUS_COMMON_LINKAGE Boolean isValidHostLocator(const String& text);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_HostLocatorCheck_h */
