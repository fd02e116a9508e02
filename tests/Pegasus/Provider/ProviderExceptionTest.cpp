#include <Pegasus/Provider/ProviderException.h>

#include <gtest/gtest.h>

#include <functional>

PEGASUS_USING_PEGASUS;

namespace {

template <class E>
std::function<void()> raise() {
    return [] { throw E("KSV_DiskDriveProvider does not support createInstance."); };
}

TEST(ProviderException, EachKindCarriesItsStatusCodeAndTheMessage) {
    const std::pair<std::function<void()>, CIMStatusCode> kinds[] = {
        {raise<CIMOperationFailedException>(), CIM_ERR_FAILED},
        {raise<CIMAccessDeniedException>(), CIM_ERR_ACCESS_DENIED},
        {raise<CIMInvalidParameterException>(), CIM_ERR_INVALID_PARAMETER},
        {raise<CIMObjectNotFoundException>(), CIM_ERR_NOT_FOUND},
        {raise<CIMNotSupportedException>(), CIM_ERR_NOT_SUPPORTED},
        {raise<CIMObjectAlreadyExistsException>(), CIM_ERR_ALREADY_EXISTS},
        {raise<CIMPropertyNotFoundException>(), CIM_ERR_NO_SUCH_PROPERTY},
        {raise<CIMMethodNotFoundException>(), CIM_ERR_METHOD_NOT_FOUND},
    };
    for (const auto& kind : kinds) {
        try {
            kind.first();
            ADD_FAILURE() << "nothing thrown";
        } catch (const CIMOperationFailedException& e) {
            EXPECT_EQ(e.getCode(), kind.second);
            EXPECT_EQ(e.getMessage(), "KSV_DiskDriveProvider does not support createInstance.");
        }
    }
}

} // namespace
