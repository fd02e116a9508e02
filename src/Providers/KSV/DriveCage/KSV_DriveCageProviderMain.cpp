// Entry point of the drive-cage provider module: the CIM server asks it for each provider
// registered for the module, by name.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include "KSV_MagazineProvider.h"

PEGASUS_USING_PEGASUS;

// A new provider object for each call; null for a name this module does not serve.
extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (String::equalNoCase(providerName, "KSV_MagazineProvider"))
        return new KSV_MagazineProvider();
    return nullptr;
}
