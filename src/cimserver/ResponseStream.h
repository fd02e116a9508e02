// The bytes of one HTTP response on their way from the worker thread that produces them to the
// connection that sends them. What may wait in between is bounded: a producer that gets ahead
// of the client blocks until the connection has sent enough, or the exchange is abandoned.
#ifndef KSV_CIMSERVER_RESPONSESTREAM_H
#define KSV_CIMSERVER_RESPONSESTREAM_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace ksv::server {

using HttpHeader = std::pair<std::string, std::string>;

struct ResponseHead {
    unsigned status = 200;
    std::vector<HttpHeader> headers;
};

// The sending side's connection, which sleeps while there is nothing to send. suspend() is
// called with the stream's lock held, so that no wake-up can overtake the sleep it ends;
// resume() without it, once per suspend().
class StreamConnection {
public:
    virtual ~StreamConnection() = default;
    virtual void suspend() = 0;
    virtual void resume() = 0;
};

struct StreamLimits {
    // A response this long, or complete, starts; a shorter one is sent whole, with its length.
    std::size_t startBytes = 64 * 1024;
    // While streaming, a sleeping connection wakes up for this much, or for the end: enough for
    // a full chunk, so that a fast producer does not cost a wake-up per small piece.
    std::size_t wakeBytes = 256 * 1024;
    // The producer waits while this much is unsent; four wake-ups, so that it goes on encoding
    // while the connection sends. With less, the producer and the connection took turns on one
    // core more than they ran side by side.
    std::size_t capacityBytes = 1024 * 1024;
};

class ResponseStream {
public:
    ResponseStream(std::shared_ptr<StreamConnection> connection, StreamLimits limits);
    ResponseStream(const ResponseStream&) = delete;
    ResponseStream& operator=(const ResponseStream&) = delete;

    // ---- Producer side -----------------------------------------------------------------------
    // Before the first write; the default head is 200 with no headers.
    void setHead(ResponseHead head);
    // Takes the bytes, waiting for room first, and leaves `bytes` empty, in the buffer of a piece
    // already sent when there is one. False, taking nothing, once the exchange has been abandoned.
    bool write(std::string& bytes);
    // The end of the body. Trailers reach only a client whose response is being streamed.
    void finish(std::vector<HttpHeader> trailers = {});
    bool abandoned() const;
    // Drops what was written, unless the response has started: true when it was dropped.
    bool discardUnsent();

    // ---- Sending side ------------------------------------------------------------------------
    // True when the response can start; otherwise the connection is suspended until it can.
    bool readyOrSuspend();
    // Suspends the connection until the response can start, and resumes it at once when it
    // already can.
    void suspendUntilReady();
    ResponseHead head() const;
    // Once ready: true and the whole body when the producer has finished, so that the response
    // can carry its length; false when it must be streamed with read().
    bool takeWholeBody(std::string& body);

    // What read() found.
    enum class ReadState { Data, Suspended, End, Abandoned };
    // Copies up to `capacity` bytes into `buffer`. Suspended: nothing to send yet, and the
    // connection has been suspended until there is.
    ReadState read(char* buffer, std::size_t capacity, std::size_t& copied);
    // The trailers, once read() has reported End.
    std::vector<HttpHeader> trailers() const;

    // The client is gone or the server stops: the producer's writes fail from now on, and a
    // suspended connection is woken to close.
    void abandon();

private:
    bool takeWakeUp();
    void retire(std::string&& sent);

    const std::shared_ptr<StreamConnection> _connection;
    const StreamLimits _limits;

    mutable std::mutex _mutex;
    std::condition_variable _roomFreed;
    ResponseHead _head;
    std::deque<std::string> _chunks;
    // Buffers of pieces sent, for the producer's next ones: a fresh buffer per piece cost page
    // faults, and the allocator handing the memory back to the system while the response went on.
    std::vector<std::string> _spare;
    std::size_t _frontOffset = 0;
    std::size_t _buffered = 0;
    bool _finished = false;
    bool _abandoned = false;
    bool _started = false;
    bool _connectionSuspended = false;
    std::vector<HttpHeader> _trailers;
};

} // namespace ksv::server

#endif
