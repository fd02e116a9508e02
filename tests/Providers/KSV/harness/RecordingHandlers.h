// Response handlers that record what a provider delivered, in order, and whether it called
// processing() and complete().
#ifndef KSV_TESTS_RECORDINGHANDLERS_H
#define KSV_TESTS_RECORDINGHANDLERS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <string>
#include <vector>

namespace ksv::test {

// "processing", "deliver" (once per delivered result) and "complete", as they happened.
class ResponseRecord {
public:
    const std::vector<std::string>& events() const { return _events; }
    bool processingCalled() const { return count("processing") > 0; }
    bool completeCalled() const { return count("complete") > 0; }
    size_t count(const std::string& event) const;

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

class RecordingInstanceHandler : public Pegasus::InstanceResponseHandler, public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
    void deliver(const Pegasus::CIMInstance& instance) override;
    void deliver(const Pegasus::Array<Pegasus::CIMInstance>& instances) override;

    std::vector<Pegasus::CIMInstance> delivered;
};

class RecordingObjectPathHandler : public Pegasus::ObjectPathResponseHandler,
                                   public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
    void deliver(const Pegasus::CIMObjectPath& path) override;
    void deliver(const Pegasus::Array<Pegasus::CIMObjectPath>& paths) override;

    std::vector<Pegasus::CIMObjectPath> delivered;
};

class RecordingObjectHandler : public Pegasus::ObjectResponseHandler, public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
    void deliver(const Pegasus::CIMObject& object) override;
    void deliver(const Pegasus::Array<Pegasus::CIMObject>& objects) override;

    std::vector<Pegasus::CIMObject> delivered;
};

} // namespace ksv::test

#endif
