#ifndef Pegasus_Client_Linkage_h
#define Pegasus_Client_Linkage_h

#include <Pegasus/Common/Config.h>

#ifndef PEGASUS_CLIENT_LINKAGE
#ifdef PEGASUS_CLIENT_INTERNAL
#define PEGASUS_CLIENT_LINKAGE PEGASUS_EXPORT
#else
#define PEGASUS_CLIENT_LINKAGE PEGASUS_IMPORT
#endif
#endif

#endif
