#ifndef Pegasus_CIMPropertyReader_h
#define Pegasus_CIMPropertyReader_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>

#include <memory>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

/**
    Reads an instance's properties where the instance holds them, for the
    server's own encoder: a handle per property would count a reference up
    and down for every property written. Providers and clients use
    getProperty(), which hands out a handle of their own.
*/
class PEGASUS_COMMON_LINKAGE CIMPropertyReader {
public:
    struct Read {
        const CIMProperty* property;
        /**
            Whether the instance leaves the property as it is in the properties it was made
            from, those of its class: then the property is the same for all the instances made
            so, and nothing changes it or frees it while sharedKeeper() is held.
        */
        bool unchanged;
        /**
            For a property the instance has changed, the identity of the declaration (name,
            origin, ...) it still shares with the property it was cloned from, or null. Nothing
            changes that declaration while sharedKeeper() is held.
        */
        const void* sharedDeclaration;
    };
    /** All the properties, in order, into `read`: valid while the instance is neither changed
        nor freed. */
    static void readAll(const CIMConstInstance& instance, std::vector<Read>& read);
    static std::shared_ptr<const void> sharedKeeper(const CIMConstInstance& instance);
};

PEGASUS_NAMESPACE_END

#endif
