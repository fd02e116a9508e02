// Response handlers that record what a provider delivered, in order, and whether it called
// processing() and complete().
#ifndef KSV_TESTS_RECORDINGHANDLERS_H
#define KSV_TESTS_RECORDINGHANDLERS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace ksv::test {

// "processing", "deliver" (once per delivered result) and "complete", as they happened.
class ResponseRecord {
public:
    const std::vector<std::string>& events() const { return _events; }

protected:
    void note(const char* event) { _events.push_back(event); }

private:
    std::vector<std::string> _events;
};

class RecordingResponseHandler : public Pegasus::ResponseHandler, public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
};

template <typename Handler, typename Result>
class RecordingHandler : public Handler, public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
    void deliver(const Result& result) override {
        if (delivered.size() + 1 == failingDelivery)
            throw std::runtime_error("client went away");
        note("deliver");
        delivered.push_back(result);
    }
    void deliver(const Pegasus::Array<Result>& results) override {
        for (Pegasus::Uint32 i = 0; i < results.size(); i++)
            deliver(results[i]);
    }

    std::vector<Result> delivered;
    // The delivery with this number fails, as for a client that went away; 0 for none.
    size_t failingDelivery = 0;
};

using RecordingInstanceHandler =
    RecordingHandler<Pegasus::InstanceResponseHandler, Pegasus::CIMInstance>;
using RecordingObjectPathHandler =
    RecordingHandler<Pegasus::ObjectPathResponseHandler, Pegasus::CIMObjectPath>;
using RecordingObjectHandler = RecordingHandler<Pegasus::ObjectResponseHandler, Pegasus::CIMObject>;

} // namespace ksv::test

#endif
