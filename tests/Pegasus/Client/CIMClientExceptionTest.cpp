#include <Pegasus/Client/CIMClientException.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

TEST(CIMClientHTTPErrorException, MessageNamesWhatIsGivenAndCopiesKeepEveryField) {
    const CIMClientHTTPErrorException full(403, "Forbidden", "access-denied", "user bob");
    EXPECT_EQ(full.getMessage(), "HTTP Error (403 Forbidden): CIMError = \"access-denied\" "
                                 "Detail = \"user bob\".");
    EXPECT_EQ(CIMClientHTTPErrorException(500, "", "", "").getMessage(), "HTTP Error (500).");
    EXPECT_EQ(CIMClientHTTPErrorException(400, "Bad Request", "", "").getMessage(),
              "HTTP Error (400 Bad Request).");
    EXPECT_EQ(CIMClientHTTPErrorException(400, "unsupported-operation", "").getMessage(),
              "HTTP Error (400): CIMError = \"unsupported-operation\".");
    EXPECT_EQ(CIMClientHTTPErrorException(501, "", "only detail").getMessage(),
              "HTTP Error (501): Detail = \"only detail\".");
    CIMClientHTTPErrorException copy(full);
    CIMClientHTTPErrorException assigned(500, "", "");
    assigned = full;
    for (const CIMClientHTTPErrorException* e : {&copy, &assigned}) {
        EXPECT_EQ(e->getCode(), 403u);
        EXPECT_EQ(e->getCIMError(), "access-denied");
        EXPECT_EQ(e->getCIMErrorDetail(), "user bob");
        EXPECT_EQ(e->getMessage(), full.getMessage());
    }
}

} // namespace
