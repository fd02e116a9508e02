// The hand-over between the worker producing a response and the connection sending it.
#include <gtest/gtest.h>

#include "cimserver/ResponseStream.h"

#include <future>

using ksv::server::ResponseStream;
using ksv::server::StreamConnection;
using ksv::server::StreamLimits;

namespace {

class RecordingConnection : public StreamConnection {
public:
    void suspend() override {
        ++suspends;
        suspended = true;
    }
    void resume() override {
        ++resumes;
        suspended = false;
    }

    int suspends = 0;
    int resumes = 0;
    bool suspended = false;
};

class ResponseStreamTest : public ::testing::Test {
protected:
    bool write(std::size_t bytes) {
        std::string text(bytes, 'x');
        return stream.write(text);
    }

    std::string readAll() {
        std::string text;
        char buffer[64];
        std::size_t copied = 0;
        while (stream.read(buffer, sizeof buffer, copied) == ResponseStream::ReadState::Data)
            text.append(buffer, copied);
        return text;
    }

    std::shared_ptr<RecordingConnection> connection = std::make_shared<RecordingConnection>();
    ResponseStream stream{connection, StreamLimits{100, 40, 200}};
};

TEST_F(ResponseStreamTest, AShortCompleteResponseIsSentWhole) {
    ASSERT_TRUE(write(30));
    stream.finish();
    ASSERT_TRUE(stream.readyOrSuspend());
    std::string body;
    EXPECT_TRUE(stream.takeWholeBody(body));
    EXPECT_EQ(body.size(), 30u);
    EXPECT_EQ(connection->suspends, 0);
}

TEST_F(ResponseStreamTest, TheConnectionSleepsUntilEnoughToStartHasArrived) {
    EXPECT_FALSE(stream.readyOrSuspend());
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(99));
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(1));
    EXPECT_FALSE(connection->suspended);
    EXPECT_TRUE(stream.readyOrSuspend());
    std::string body;
    EXPECT_FALSE(stream.takeWholeBody(body));
}

TEST_F(ResponseStreamTest, AStreamingConnectionWakesForEnoughBytesOrTheEnd) {
    ASSERT_TRUE(write(100));
    ASSERT_TRUE(stream.readyOrSuspend());
    EXPECT_EQ(readAll().size(), 100u);
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(39));
    EXPECT_TRUE(connection->suspended);
    ASSERT_TRUE(write(1));
    EXPECT_FALSE(connection->suspended);
    EXPECT_EQ(readAll().size(), 40u);
    stream.finish({{"CIMStatusCode", "1"}});
    EXPECT_FALSE(connection->suspended);
    std::size_t copied = 0;
    char buffer[8];
    EXPECT_EQ(stream.read(buffer, sizeof buffer, copied), ResponseStream::ReadState::End);
    EXPECT_EQ(stream.trailers().at(0).second, "1");
}

TEST_F(ResponseStreamTest, TheProducerWaitsForRoomAndStopsWhenAbandoned) {
    ASSERT_TRUE(write(200));
    std::future<bool> blocked = std::async(std::launch::async, [this] { return write(10); });
    EXPECT_EQ(blocked.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    ASSERT_TRUE(stream.readyOrSuspend());
    char buffer[16];
    std::size_t copied = 0;
    stream.read(buffer, sizeof buffer, copied);
    EXPECT_TRUE(blocked.get());

    ASSERT_TRUE(write(200));
    std::future<bool> abandoned = std::async(std::launch::async, [this] { return write(10); });
    stream.abandon();
    EXPECT_FALSE(abandoned.get());
    EXPECT_EQ(stream.read(buffer, sizeof buffer, copied), ResponseStream::ReadState::Abandoned);
}

TEST_F(ResponseStreamTest, AbandoningWakesASleepingConnection) {
    EXPECT_FALSE(stream.readyOrSuspend());
    stream.abandon();
    EXPECT_FALSE(connection->suspended);
    EXPECT_TRUE(stream.readyOrSuspend());
    EXPECT_TRUE(stream.abandoned());
}

TEST_F(ResponseStreamTest, OnlyUnsentOutputCanBeReplaced) {
    ASSERT_TRUE(write(50));
    EXPECT_TRUE(stream.discardUnsent());
    ASSERT_TRUE(write(150));
    ASSERT_TRUE(stream.readyOrSuspend());
    EXPECT_FALSE(stream.discardUnsent());
}

} // namespace
