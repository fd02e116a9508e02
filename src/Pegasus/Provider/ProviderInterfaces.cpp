#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

PEGASUS_NAMESPACE_BEGIN

// Out of line so that the vtables and type information live in one library.

CIMProvider::CIMProvider() = default;
CIMProvider::~CIMProvider() = default;

CIMInstanceProvider::CIMInstanceProvider() = default;
CIMInstanceProvider::~CIMInstanceProvider() = default;

CIMAssociationProvider::CIMAssociationProvider() = default;
CIMAssociationProvider::~CIMAssociationProvider() = default;

CIMMethodProvider::CIMMethodProvider() = default;
CIMMethodProvider::~CIMMethodProvider() = default;

PEGASUS_NAMESPACE_END
