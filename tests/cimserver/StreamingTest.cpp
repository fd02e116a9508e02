// Long answers go out in chunks while the provider is still delivering; how far a provider may
// run ahead of a slow client is the response stream's own suite.
#include <gtest/gtest.h>

#include "RawHttp.h"
#include "TestServer.h"

namespace ksv::test {
namespace {

using namespace Pegasus;

std::size_t occurrences(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

class StreamingTest : public ::testing::Test {
protected:
    HttpResponse enumerate(const char* className) {
        return exchange(server.port(),
                        cimPost(requestBody(cimxml::Operation::EnumerateInstances, className),
                                "EnumerateInstances"),
                        std::chrono::seconds(60));
    }

    TestServer server;
    std::unique_ptr<CIMClient> client = server.client();
};

TEST_F(StreamingTest, ShortAnswersCarryTheirLengthAndLongOnesAreChunked) {
    HttpResponse shortAnswer = enumerate("KSV_TestDevice");
    EXPECT_FALSE(shortAnswer.chunked);
    EXPECT_EQ(occurrences(shortAnswer.body, "<VALUE.NAMEDINSTANCE>"), 3u);
    // A client that takes chunks gets every answer in chunks, as from OpenPegasus.
    std::string post =
        cimPost(requestBody(cimxml::Operation::EnumerateInstances), "EnumerateInstances");
    post.insert(post.find("\r\n") + 2, "TE: chunked, trailers\r\n");
    EXPECT_TRUE(exchange(server.port(), post).chunked);

    server.populate(5000, 0);
    HttpResponse longAnswer = enumerate("KSV_TestDevice");
    EXPECT_TRUE(longAnswer.chunked);
    EXPECT_EQ(occurrences(longAnswer.body, "<VALUE.NAMEDINSTANCE>"), 5000u);
    EXPECT_EQ(client->enumerateInstances(kTestNamespace, "KSV_TestDevice").size(), 5000u);
}

TEST_F(StreamingTest, FailuresAreReportedInTrailersOnceTheHeadWentOutElseAsCimErrors) {
    HttpResponse response = enumerate("KSV_TestFaulty");
    ASSERT_TRUE(response.chunked);
    EXPECT_EQ(response.trailers["cimstatuscode"], "1");
    EXPECT_NE(response.trailers["cimstatuscodedescription"].find("broke"), std::string::npos);
    EXPECT_THROW(client->enumerateInstances(kTestNamespace, "KSV_TestFaulty"), Exception);

    EXPECT_EQ(cimErrorOf([&] { client->enumerateInstanceNames(kTestNamespace, "KSV_TestFaulty"); }),
              "CIM_ERR_FAILED: KSV_TestFaultyProvider.enumerateInstanceNames: names broke early");
}

} // namespace
} // namespace ksv::test
