#ifndef Pegasus_Provider_Linkage_h
#define Pegasus_Provider_Linkage_h

#include <Pegasus/Common/Config.h>

#ifndef PEGASUS_PROVIDER_LINKAGE
#ifdef PEGASUS_PROVIDER_INTERNAL
#define PEGASUS_PROVIDER_LINKAGE PEGASUS_EXPORT
#else
#define PEGASUS_PROVIDER_LINKAGE PEGASUS_IMPORT
#endif
#endif

#endif
