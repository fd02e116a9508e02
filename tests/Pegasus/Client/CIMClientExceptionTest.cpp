#include <Pegasus/Client/CIMClientException.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

TEST(CIMClientHTTPErrorException, MessageNamesStatusReasonAndCIMError) {
    CIMClientHTTPErrorException full(401, "Unauthorized", "request-not-valid", "bad header");
    EXPECT_EQ(full.getMessage(),
              "HTTP Error (401 Unauthorized): CIMError = \"request-not-valid\" Detail = \"bad "
              "header\".");
    EXPECT_EQ(full.getCode(), 401u);
    EXPECT_EQ(full.getCIMError(), "request-not-valid");
    EXPECT_EQ(full.getCIMErrorDetail(), "bad header");
}

TEST(CIMClientHTTPErrorException, MessageLeavesOutWhatIsEmpty) {
    EXPECT_EQ(CIMClientHTTPErrorException(500, "", "", "").getMessage(), "HTTP Error (500).");
    EXPECT_EQ(CIMClientHTTPErrorException(400, "Bad Request", "", "").getMessage(),
              "HTTP Error (400 Bad Request).");
    EXPECT_EQ(CIMClientHTTPErrorException(400, "unsupported-operation", "").getMessage(),
              "HTTP Error (400): CIMError = \"unsupported-operation\".");
    EXPECT_EQ(CIMClientHTTPErrorException(501, "", "only detail").getMessage(),
              "HTTP Error (501): Detail = \"only detail\".");
}

TEST(CIMClientHTTPErrorException, CopiesKeepEveryField) {
    CIMClientHTTPErrorException original(403, "Forbidden", "access-denied", "user bob");
    CIMClientHTTPErrorException copy(original);
    CIMClientHTTPErrorException assigned(500, "", "");
    assigned = original;
    for (const CIMClientHTTPErrorException* e : {&copy, &assigned}) {
        EXPECT_EQ(e->getCode(), 403u);
        EXPECT_EQ(e->getCIMError(), "access-denied");
        EXPECT_EQ(e->getCIMErrorDetail(), "user bob");
        EXPECT_EQ(e->getMessage(), original.getMessage());
    }
}

TEST(CIMClientException, ProtocolFailuresCarryTheirMessage) {
    EXPECT_EQ(CIMClientMalformedHTTPException("no status line").getMessage(), "no status line");
    EXPECT_EQ(CIMClientXmlException("unclosed CIM element").getMessage(), "unclosed CIM element");
    EXPECT_EQ(CIMClientResponseException("wrong message id").getMessage(), "wrong message id");
}

} // namespace
