// The hand-over between the worker producing a response and the connection sending it.
#include <gtest/gtest.h>

#include "cimserver/ResponseStream.h"

#include <future>

namespace ksv::server {
namespace {

class RecordingConnection : public StreamConnection {
public:
    void suspend() override { suspended = true; }
    void resume() override { suspended = false; }

    bool suspended = false;
};

class ResponseStreamTest : public ::testing::Test {
protected:
    bool write(std::size_t bytes) {
        std::string text(bytes, 'x');
        return stream.write(text);
    }

    std::size_t readAll() {
        std::size_t total = 0;
        char buffer[64];
        std::size_t copied = 0;
        while (stream.read(buffer, sizeof buffer, copied) == ResponseStream::ReadState::Data)
            total += copied;
        return total;
    }

    // Start after 100 bytes, wake for 40, hold at most 200.
    std::shared_ptr<RecordingConnection> connection = std::make_shared<RecordingConnection>();
    ResponseStream stream{connection, StreamLimits{100, 40, 200}};
};

TEST_F(ResponseStreamTest, AShortCompleteResponseIsSentWholeAndOnlyUnsentOutputReplaced) {
    ASSERT_TRUE(write(30));
    EXPECT_TRUE(stream.discardUnsent());
    ASSERT_TRUE(write(30));
    stream.finish();
    ASSERT_TRUE(stream.readyOrSuspend());
    EXPECT_FALSE(connection->suspended);
    std::string body;
    EXPECT_TRUE(stream.takeWholeBody(body));
    EXPECT_EQ(body.size(), 30u);
    EXPECT_FALSE(stream.discardUnsent()) << "the response has started";
}

TEST_F(ResponseStreamTest, TheConnectionWakesToStartThenForEnoughBytesOrTheEnd) {
    EXPECT_FALSE(stream.readyOrSuspend());
    ASSERT_TRUE(write(99));
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(1));
    EXPECT_FALSE(connection->suspended);
    ASSERT_TRUE(stream.readyOrSuspend());
    std::string body;
    EXPECT_FALSE(stream.takeWholeBody(body)) << "an unfinished response is streamed";
    EXPECT_EQ(readAll(), 100u);
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(39));
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(1));
    EXPECT_FALSE(connection->suspended);
    EXPECT_EQ(readAll(), 40u);
    stream.finish({{"CIMStatusCode", "1"}});
    EXPECT_FALSE(connection->suspended);
    std::size_t copied = 0;
    char buffer[8];
    EXPECT_EQ(stream.read(buffer, sizeof buffer, copied), ResponseStream::ReadState::End);
    EXPECT_EQ(stream.trailers().at(0).second, "1");
}

TEST_F(ResponseStreamTest, TheProducerWaitsForRoomAndAbandoningReleasesBothSides) {
    ASSERT_TRUE(write(200));
    std::future<bool> blocked = std::async(std::launch::async, [this] { return write(10); });
    EXPECT_EQ(blocked.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    ASSERT_TRUE(stream.readyOrSuspend());
    char buffer[16];
    std::size_t copied = 0;
    stream.read(buffer, sizeof buffer, copied);
    EXPECT_TRUE(blocked.get());

    ASSERT_TRUE(write(6));
    std::future<bool> abandoned = std::async(std::launch::async, [this] { return write(10); });
    EXPECT_EQ(abandoned.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    stream.abandon();
    EXPECT_FALSE(abandoned.get());
    EXPECT_EQ(stream.read(buffer, sizeof buffer, copied), ResponseStream::ReadState::Abandoned);

    // A connection asleep before its response started is woken to close.
    auto sleeper = std::make_shared<RecordingConnection>();
    ResponseStream idle{sleeper, StreamLimits{100, 40, 200}};
    EXPECT_FALSE(idle.readyOrSuspend());
    EXPECT_TRUE(sleeper->suspended);
    idle.abandon();
    EXPECT_FALSE(sleeper->suspended);
    EXPECT_TRUE(idle.readyOrSuspend());
    EXPECT_TRUE(idle.abandoned());
}

} // namespace
} // namespace ksv::server
